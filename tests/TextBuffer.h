// What is printed, as text: for tests and fuzzers.

#pragma once

#include "TrafficPolicy/platform/wendo/PrintBuffer.h"

#include <string>

namespace test {

// Collects what is flushed. Of a few bytes, so that pieces may end anywhere.
class TextBuffer : public wendo::PrintBuffer {
public:
   TextBuffer()
      : PrintBuffer( bytes_, sizeof bytes_ ) {}
   void flush() override {
      text_ += committed();
      discard();
   }
   std::string text() {
      flush();
      return text_;
   }

private:
   void makeRoom() override { flush(); }
   char bytes_[200];
   std::string text_;
};

} // namespace test
