#include "TrafficPolicy/platform/wendo/Interrupt.h"

namespace wendo {

char const * SigIntException::what() const noexcept {
   return "on interrupt";
}

namespace interrupt {

volatile std::sig_atomic_t requested = 0;

namespace {
unsigned servedCount = 0;
}

void request() noexcept {
   requested = 1;
}

void serve() {
   requested = 0;
   ++servedCount;
   throw SigIntException();
}

unsigned served() noexcept {
   return servedCount;
}

} // namespace interrupt

} // namespace wendo
