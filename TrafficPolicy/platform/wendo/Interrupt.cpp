#include "TrafficPolicy/platform/wendo/Interrupt.h"

namespace wendo {

char const * SigIntException::what() const noexcept {
   return "on interrupt";
}

namespace interrupt {

constinit Flag requested;

namespace {
constinit thread_local unsigned servedCount = 0;
}

void request() noexcept {
   requested = true;
}

void serve() {
   requested = false;
   ++servedCount;
   throw SigIntException();
}

unsigned served() noexcept {
   return servedCount;
}

} // namespace interrupt

} // namespace wendo
