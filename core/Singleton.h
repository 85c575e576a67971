#pragma once
// The one instance of a program-wide module. It is made on the first call of
// getInstance(), never by a static constructor, and lives until program end.

template <class T>
class TSingleton {
 public:
  TSingleton(const TSingleton&) = delete;
  TSingleton& operator=(const TSingleton&) = delete;

  static T& getInstance() {
    static T Instance;
    return Instance;
  }

 protected:
  // A module that derives from TSingleton<T> may keep its own constructor
  // private and befriend TSingleton<T>.
  TSingleton() = default;
  ~TSingleton() = default;
};
