// Pelx::IpGenPrefix: an IPv4 or IPv6 prefix, and its text.

#pragma once

#include "TrafficPolicy/platform/Export.h"

#include <array>
#include <compare>
#include <cstddef>
#include <cstdint>

namespace Pelx {

// An IPv6 address in network byte order.
class TRAFFIC_POLICY_API Ip6Addr {
public:
   // The longest text: eight groups of four digits, or an IPv4-mapped address.
   static constexpr size_t textMax = 39;

   std::array< uint8_t, 16 > bytes{};

   // Writes the text of RFC 5952, IPv4-mapped addresses (::ffff:0:0/96) in dotted form, without a
   // terminator, and returns its end. The buffer holds at least textMax bytes.
   char * printToBuffer( char * buffer ) const;

   friend auto operator<=>( Ip6Addr const &, Ip6Addr const & ) = default;
};

struct Ip4Prefix {
   uint32_t address = 0; // host byte order
   uint8_t length = 0;
};

struct Ip6Prefix {
   Ip6Addr address;
   uint8_t length = 0;
};

// Ordered by family (IPv4 first), address, length.
class TRAFFIC_POLICY_API IpGenPrefix {
public:
   enum class Family : uint8_t { ipv4 = 1, ipv6 = 2 };
   // The longest text: an IPv6 address, "/128".
   static constexpr size_t textMax = Ip6Addr::textMax + 4;
   // Room that printToBuffer needs: it may write up to three bytes beyond the text's end.
   static constexpr size_t printRoom = 64;

   // 0.0.0.0/0
   IpGenPrefix() = default;
   // The length is at most 32 or 128; bits beyond it are clear. Not checked.
   explicit IpGenPrefix( Ip4Prefix const & prefix );
   explicit IpGenPrefix( Ip6Prefix const & prefix );

   Family family() const { return family_; }
   Ip4Prefix v4Prefix() const {
      return { uint32_t{ bytes_[0] } << 24 | uint32_t{ bytes_[1] } << 16
                  | uint32_t{ bytes_[2] } << 8 | bytes_[3],
               length_ };
   }
   Ip6Prefix v6Prefix() const { return { Ip6Addr{ bytes_ }, length_ }; }

   // Writes the text without a terminator and returns its end. The buffer holds at least printRoom
   // bytes.
   char * printToBuffer( char * buffer ) const;

   uint32_t hash() const;
   friend auto operator<=>( IpGenPrefix const &, IpGenPrefix const & ) = default;

private:
   Family family_ = Family::ipv4;
   std::array< uint8_t, 16 > bytes_{}; // network byte order; an IPv4 address in the first four
   uint8_t length_ = 0;
};

// Writes at most size - 1 characters of the prefix's text and a terminator (nothing when size is
// 0), and returns the full length of the text, as std::snprintf does.
TRAFFIC_POLICY_API size_t to_stringb( char * buffer, size_t size, IpGenPrefix const & prefix );

} // namespace Pelx
