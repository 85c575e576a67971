#include "core/Exception.h"

#include <string_view>

namespace {

std::string BaseName(std::string_view Path) {
  const auto Slash = Path.find_last_of("/\\");
  return std::string(Slash == std::string_view::npos ? Path : Path.substr(Slash + 1));
}

}  // namespace

TMyException::TMyException(const std::source_location& Where, std::string Text,
                           std::vector<TNamedValue> Values, std::string Reason)
    : m_File(BaseName(Where.file_name())),
      m_Line(static_cast<int>(Where.line())),
      m_Text(std::move(Text)),
      m_Values(std::move(Values)),
      m_Reason(std::move(Reason)) {
  m_What = m_File + "(" + std::to_string(m_Line) + "): " + m_Text;
  for (size_t I = 0; I < m_Values.size(); ++I) {
    m_What += (I == 0 ? " (" : ", ") + m_Values[I].Name + ": " + m_Values[I].Value;
  }
  if (!m_Values.empty()) m_What += ")";
  if (!m_Reason.empty()) m_What += ", reason: " + m_Reason;
}

void ThrowException(std::string Text, std::vector<TNamedValue> Values,
                    std::source_location Where) {
  throw TMyException(Where, std::move(Text), std::move(Values));
}

void ThrowCheck(const char* Text, std::initializer_list<TCheckValue> Values,
                std::source_location Where) {
  std::vector<TNamedValue> Named;
  for (const TCheckValue& V : Values) Named.push_back({V.Name, std::to_string(V.Value)});
  throw TMyException(Where, Text, std::move(Named));
}

void RethrowGuarded(std::string Text, std::source_location Where) {
  try {
    throw;
  } catch (PROGRAM_ERROR) {
    throw;
  } catch (const TMyException& E) {
    throw TMyException(Where, std::move(Text), {}, E.what());
  } catch (const std::exception& E) {
    throw TMyException(Where, "standard exception occurred", {}, E.what());
  } catch (...) {
    throw TMyException(Where, std::move(Text));
  }
}

void RethrowGuarded(std::source_location Where) {
  RethrowGuarded("exception occurred", Where);
}
