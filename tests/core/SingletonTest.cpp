#include "core/Singleton.h"

#include <gtest/gtest.h>

namespace {

// Counts its constructions so that the test sees when the instance is made.
class TCountedModule : public TSingleton<TCountedModule> {
 public:
  static inline int Constructed = 0;
  int Value = 0;

 private:
  friend class TSingleton<TCountedModule>;
  TCountedModule() { ++Constructed; }
};

struct TPlainModule {
  int Value = 0;
};

TEST(SingletonTest, TheInstanceIsMadeAtFirstUseAndOnlyOnce) {
  EXPECT_EQ(TCountedModule::Constructed, 0);
  TCountedModule& First = TCountedModule::getInstance();
  EXPECT_EQ(TCountedModule::Constructed, 1);
  First.Value = 42;
  TCountedModule& Second = TCountedModule::getInstance();
  EXPECT_EQ(&First, &Second);
  EXPECT_EQ(Second.Value, 42);
  EXPECT_EQ(TCountedModule::Constructed, 1);
}

TEST(SingletonTest, AnyClassCanBeReachedThroughTheTemplate) {
  TSingleton<TPlainModule>::getInstance().Value = 7;
  EXPECT_EQ(&TSingleton<TPlainModule>::getInstance(), &TSingleton<TPlainModule>::getInstance());
  EXPECT_EQ(TSingleton<TPlainModule>::getInstance().Value, 7);
}

}  // namespace
