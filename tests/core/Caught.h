#pragma once
// The TMyException that a piece of test code throws.
#include <gtest/gtest.h>

#include <source_location>

#include "core/Exception.h"

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
