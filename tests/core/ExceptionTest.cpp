#include <gtest/gtest.h>

#include <source_location>
#include <stdexcept>
#include <string>

#include "core/Exception.h"

namespace {

std::string Place(const std::source_location& Where) {
  return "ExceptionTest.cpp(" + std::to_string(Where.line()) + ")";
}

// The TMyException that Body throws.
template <class TBody>
TMyException Caught(TBody Body) {
  try {
    Body();
  } catch (const TMyException& E) {
    return E;
  }
  ADD_FAILURE() << "no TMyException was thrown";
  return TMyException(std::source_location::current(), "nothing thrown");
}

TEST(Exception, WhatJoinsPlaceTextAndValues) {
  const auto Where = std::source_location::current();
  const TMyException E(Where, "Position<=Size-1", {{"Position", "7"}, {"Size", "5"}});
  EXPECT_EQ(E.what(), Place(Where) + ": Position<=Size-1 (Position: 7, Size: 5)");
  EXPECT_EQ(E.File(), "ExceptionTest.cpp");
  EXPECT_EQ(E.Line(), static_cast<int>(Where.line()));
  EXPECT_EQ(E.Text(), "Position<=Size-1");
  ASSERT_EQ(E.Values().size(), 2u);
  EXPECT_EQ(E.Values()[1].Value, "5");
}

TEST(Exception, ReasonFollowsTheText) {
  const auto Where = std::source_location::current();
  const TMyException E(Where, "exception occurred", {}, "inner text");
  EXPECT_EQ(E.what(), Place(Where) + ": exception occurred, reason: inner text");
  EXPECT_EQ(E.Reason(), "inner text");
}

TEST(Exception, CheckThrowsTheExpressionWithItsValues) {
  const int Position = 9;
  const int Size = 4;
  const int CheckLine = __LINE__ + 2;
  const TMyException E = Caught([&] {
    Check(Position <= Size - 1, "Position<=Size-1", {"Position", Position}, {"Size", Size});
  });
  EXPECT_EQ(E.what(), "ExceptionTest.cpp(" + std::to_string(CheckLine) + "): Position<=Size-1 (Position: 9, Size: 4)");
  EXPECT_NO_THROW(Check(true, "never"));
}

TEST(Exception, ThrowExceptionCarriesTextAndValues) {
  const TMyException E = Caught([] { ThrowException("unknown event", {{"Event", "42"}}); });
  EXPECT_EQ(E.Text(), "unknown event");
  EXPECT_NE(std::string(E.what()).find(": unknown event (Event: 42)"), std::string::npos) << E.what();
}

TEST(Exception, ProgramErrorPassesThroughTheGuardUnchanged) {
  const auto Guarded = [] {
    try {
      throw PROGRAM_ERROR::ALREADY_RUNNING;
    } catch (...) {
      RethrowGuarded();
    }
  };
  try {
    Guarded();
    FAIL() << "nothing was thrown";
  } catch (PROGRAM_ERROR Code) {
    EXPECT_EQ(Code, PROGRAM_ERROR::ALREADY_RUNNING);
  }
}

TEST(Exception, GuardWrapsWithItsOwnPlace) {
  std::string Inner;
  std::source_location Guard;
  const TMyException E = Caught([&] {
    try {
      ThrowException("assertion failed");
    } catch (const TMyException& Fault) {
      Inner = Fault.what();
      Guard = std::source_location::current();
      RethrowGuarded(Guard);
    }
  });
  EXPECT_EQ(E.Text(), "exception occurred");
  EXPECT_EQ(E.Reason(), Inner);
  EXPECT_EQ(E.what(), Place(Guard) + ": exception occurred, reason: " + Inner);
}

TEST(Exception, GuardChainReadsFromTheMainStepToTheFault) {
  const auto Outer = std::source_location::current();
  const TMyException E = Caught([&] {
    try {
      try {
        throw std::out_of_range("vector index");
      } catch (...) {
        RethrowGuarded();
      }
    } catch (...) {
      RethrowGuarded("exception occurred (MessageType: 9)", Outer);
    }
  });
  const std::string What = E.what();
  EXPECT_EQ(What.rfind(Place(Outer) + ": exception occurred (MessageType: 9), reason: ", 0), 0u) << What;
  EXPECT_NE(What.find(": standard exception occurred, reason: vector index"), std::string::npos) << What;
}

TEST(Exception, StandardExceptionBecomesStandardExceptionOccurred) {
  const TMyException E = Caught([] {
    try {
      throw std::runtime_error("disk full");
    } catch (...) {
      RethrowGuarded();
    }
  });
  EXPECT_EQ(E.Text(), "standard exception occurred");
  EXPECT_EQ(E.Reason(), "disk full");
}

TEST(Exception, ForeignExceptionTakesTheGuardsText) {
  const TMyException E = Caught([] {
    try {
      throw 17;
    } catch (...) {
      RethrowGuarded();
    }
  });
  EXPECT_EQ(E.Text(), "exception occurred");
  EXPECT_TRUE(E.Reason().empty());
}

}  // namespace
