// Umbo::UniqueId: one incarnation of a hardware counter.

#pragma once

#include <cstdint>

namespace Umbo {

// Opaque: only equality has a meaning. A default-constructed one means "no id".
class UniqueId {
public:
   constexpr UniqueId() = default;
   constexpr explicit UniqueId( uint64_t value )
      : value_( value ) {}

   constexpr uint64_t value() const { return value_; }
   friend constexpr bool operator==( UniqueId const &, UniqueId const & ) = default;

private:
   uint64_t value_ = ~uint64_t{ 0 };
};

} // namespace Umbo
