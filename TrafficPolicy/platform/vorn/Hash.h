// The hashes of keys. The same on every run and word size, except for entities.

#pragma once

#include "TrafficPolicy/platform/vorn/Ptr.h"

#include <concepts>
#include <cstdint>
#include <type_traits>

namespace Vorn {

constexpr uint32_t hashMix( uint32_t value ) {
   uint64_t const product = uint64_t{ value ^ 0x85EBCA6Bu } * 0xC2B2AE35u;
   return static_cast< uint32_t >( product ) ^ static_cast< uint32_t >( product >> 32 );
}

// Keys that know their hash.
template< typename Key >
   requires requires( Key const & key ) {
      { key.hash() } -> std::convertible_to< uint32_t >;
   }
uint32_t hashOf( Key const & key ) {
   return key.hash();
}

template< typename Key >
   requires std::is_enum_v< Key > || std::integral< Key > uint32_t hashOf( Key key ) {
      return hashMix( static_cast< uint32_t >( key ) );
   }

// Entities are hashed by identity.
template< typename T >
uint32_t hashOf( Ptr< T > const & entity ) {
   return hashMix( static_cast< uint32_t >( reinterpret_cast< uintptr_t >( entity.get() ) >> 3 ) );
}

} // namespace Vorn
