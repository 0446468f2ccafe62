// The renderer's bytes, and the texts of numbers and prefixes.

#include "TrafficPolicy/platform/wendo/WendoBuffer.h"
#include "TrafficPolicy/views/RendererV2.h"
#include "tests/Support.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <functional>
#include <limits>
#include <string>
#include <vector>

namespace {

using Classification::NumericalRange;
using wendo::JsonKey;
using wendo::JsonMember;
using wendo::JustifyLeft;
using wendo::OutputFormat_t;
using wendo::RendererV2;

template< typename Function >
std::string rendered( OutputFormat_t format, Function const & function ) {
   test::TextBuffer memory;
   RendererV2 renderer( format, memory );
   function( renderer );
   return memory.text();
}

constexpr OutputFormat_t formats[] = { OutputFormat_t::TEXT, OutputFormat_t::JSON,
                                       OutputFormat_t{ 0 }, OutputFormat_t{ 3 } };
constexpr JsonKey key( "key" );

TEST( Renderer, OperationsThatTestTheFormat ) {
   struct {
      std::function< void( RendererV2 & ) > function;
      char const * text;
      char const * json;
   } const cases[] = {
      { []( auto & r ) { r.eol(); }, "\n", "" },
      { []( auto & r ) { r.addFrill( "frill" ); }, "frill", "" },
      { []( auto & r ) { r.addText( "label: ", Vorn::String( "v" ) ); }, "label: v", "" },
      { []( auto & r ) { r.addText( "n", uint64_t{ 12 } ); }, "n12", "" },
      { []( auto & r ) { r.endJsonDict(); }, "", "}" },
      { []( auto & r ) { r.endJsonList(); }, "", "]" },
      { []( auto & r ) { r.endJsonListEntry(); }, "", "}" },
      { []( auto & r ) { r.startJsonObject( key ); }, "", ",\"key\":{" },
      { []( auto & r ) { r.startJsonObject( Vorn::String( "a\"" ) ); }, "", ",\"a\\\"\":{" },
      { []( auto & r ) { r.startJsonList( key ); }, "", ",\"key\":[" },
      { []( auto & r ) { r.startJsonListEntry(); }, "", ",{" },
      { []( auto & r ) { r.addJsonKeyValuePair( key, true ); }, "", ",\"key\":true" },
      { []( auto & r ) { r.addJsonKeyValuePair( key, 7u ); }, "", ",\"key\":7" },
      { []( auto & r ) { r.addJsonKeyValuePair( "k", std::string( "\"" ) ); }, "",
        ",\"k\":\"\\\"\"" },
      { []( auto & r ) { r.addJsonKeyValuePair( std::string(), "bgp" ); }, "", ",\"bgp\"" },
      { []( RendererV2 & r ) {
          r.startJsonRoot();
          r.endJsonRoot();
       },
        "", "{}\n" },
   };
   for ( auto const & [function, text, json] : cases ) {
      for ( OutputFormat_t const format : formats ) {
         EXPECT_EQ( rendered( format, function ), format == OutputFormat_t::TEXT   ? text
                                                  : format == OutputFormat_t::JSON ? json
                                                                                   : "" );
      }
   }
}

TEST( Renderer, CommasStandBetweenMembers ) {
   Vorn::String const empty;
   std::string const longName( 300, 'n' );
   NumericalRange const ports[] = { { 80, 443 }, { 7, 7 } };
   EXPECT_EQ( rendered( OutputFormat_t::JSON,
                        [&]( RendererV2 & r ) {
                           r.startJsonRoot();
                           r._startJsonObject( empty );
                           r._startJsonList( Vorn::String( "list" ) );
                           r._startJsonListEntry();
                           r._startJsonListEntry();
                           r.endJsonListEntry();
                           r._addJsonKeyValuePair( Vorn::String( "name" ), Vorn::String( "v" ) );
                           r.endJsonListEntry();
                           r._addJsonKeyValuePair( empty, Vorn::String( "element" ) );
                           r._addJsonKeyValuePair( wendo::listElement, std::string_view( "x" ) );
                           r._addJsonListEntry( JsonMember{ key, NumericalRange{ 0, ~0u } },
                                                JsonMember{ key, true } );
                           r._startJsonListEntry( JsonMember{ Vorn::String( "a\"" ), 1u } );
                           r._addJsonList( key, std::array{ &ports[0] } );
                           r._addJsonList( key, std::array{ &ports[0], &ports[1] } );
                           r.endJsonListEntry();
                           r.endJsonList();
                           r._addJsonObject( Vorn::String( longName ), JsonMember{ key, empty } );
                           r._addJsonKeyValuePair( key, false );
                           r.endJsonDict();
                           r._addJsonKeyValuePair( key, ~uint64_t{ 0 } );
                           r.endJsonRoot();
                        } ),
              "{\"\":{\"list\":[{{},\"name\":\"v\"},\"element\",\"x\","
              "{\"key\":{\"low\":0,\"high\":4294967295},\"key\":true},"
              "{\"a\\\"\":1,\"key\":[{\"low\":80,\"high\":443}],"
              "\"key\":[{\"low\":80,\"high\":443},{\"low\":7,\"high\":7}]}],\""
                 + longName + "\":{\"key\":\"\"},\"key\":false},\"key\":18446744073709551615}\n" );
}

// Scopes close before the next member; after an exception nothing closes, so that a reply that was
// cut does not look complete.
TEST( Renderer, ScopesCloseThemselves ) {
   struct Stop {};
   auto const write = []( RendererV2 & r, bool stop ) {
      auto const outer = r.object( "o" );
      {
         auto const list = r.list( key );
         r.text( "text only" );
         { auto const entry = r.listEntry(); }
         auto const entry = r.listEntry( JsonMember{ key, 1u } );
         auto const inner = r.object( Vorn::String( "\"" ) );
      }
      if ( stop ) {
         throw Stop();
      }
      r.addJsonKeyValuePair( key, true );
      auto const last = r.object( key );
   };
   std::string const begin = "{\"o\":{\"key\":[{},{\"key\":1,\"\\\"\":{";
   auto const all = [&]( RendererV2 & r ) {
      r.startJsonRoot();
      write( r, false );
      r.endJsonRoot();
   };
   EXPECT_EQ( rendered( OutputFormat_t::JSON, all ), begin + "}}],\"key\":true,\"key\":{}}}\n" );
   EXPECT_EQ( rendered( OutputFormat_t::TEXT, all ), "text only" );
   test::TextBuffer memory;
   RendererV2 renderer( OutputFormat_t::JSON, memory );
   renderer.startJsonRoot();
   EXPECT_THROW( write( renderer, true ), Stop );
   EXPECT_EQ( memory.text(), begin );
}

TEST( Renderer, FieldsAndLongTexts ) {
   std::string const longText( 1000, 'x' );
   struct {
      std::string text;
      unsigned width;
   } const fields[] = { { "", 0 },    { "", 9 },     { "", 500 },    { "abc", 2 },
                        { "abc", 3 }, { "abc", 70 }, { longText, 3 } };
   for ( auto const & field : fields ) {
      std::string wanted = field.text;
      wanted.resize( std::max< size_t >( field.text.size(), field.width ), ' ' );
      EXPECT_EQ( rendered( OutputFormat_t::TEXT,
                           [&]( auto & r ) {
                              r.writeString( JustifyLeft{ field.text, field.width } );
                           } ),
                 wanted );
   }
   for ( size_t size = 0; size <= 200; ++size ) {
      std::string const text( size, 'y' );
      EXPECT_EQ( rendered( OutputFormat_t::JSON,
                           [&]( RendererV2 & r ) {
                              r.writeString( Vorn::String( text ) );
                              r.writeJsonValue( Vorn::String( text ) );
                              r.writeString( text.data(), text.size() );
                           } ),
                 text + "\"" + text + "\"" + text );
   }
   EXPECT_DEATH( test::TextBuffer().getBuffer( 201 ),
                 "endPtr - writePtr >= ptrdiff_t\\( required \\)" );
   EXPECT_DEATH( wendo::WendoBuffer( -1, 0, false ).append( "x" ), "capacity\\(\\) > 0" );
#ifdef TP_CHECK_RESERVATIONS
   EXPECT_DEATH(
      {
         test::TextBuffer memory;
         memory.commit( memory.getBuffer( 4 ) + 5 );
      },
      "withinReservation" );
   EXPECT_DEATH(
      {
         test::TextBuffer memory;
         char * const to = memory.getBuffer( 4 );
         to[4] = 'x';
         memory.commit( to );
      },
      "!reservationOverrun" );
#endif
}

TEST( Renderer, Numbers ) {
   std::vector< uint64_t > values = { 255, std::numeric_limits< uint32_t >::max(),
                                      uint64_t{ 1 } << 32, std::numeric_limits< uint64_t >::max() };
   for ( uint64_t power = 1; power != 0; power = power <= ~uint64_t{ 0 } / 10 ? power * 10 : 0 ) {
      for ( uint64_t const value : { power - 1, power, power + 1, power * 9, power * 5 + 37 } ) {
         values.push_back( value );
      }
   }
   for ( uint64_t const value : values ) {
      std::string const wanted = std::to_string( value ) + ' '
                                 + std::to_string( static_cast< uint32_t >( value ) ) + ' '
                                 + std::to_string( static_cast< uint8_t >( value ) );
      EXPECT_EQ( rendered( OutputFormat_t::TEXT,
                           [&]( RendererV2 & r ) {
                              r.writeString( value );
                              r._addText( " ", static_cast< uint32_t >( value ) );
                              r._addText( " ", static_cast< uint8_t >( value ) );
                           } ),
                 wanted );
   }
}

TEST( Renderer, EscapesForJson ) {
   struct {
      std::string_view text;
      char const * wanted;
   } const cases[] = {
      { "\"\\/\b\f\n\r\t", "\\\"\\\\/\\b\\f\\n\\r\\t" },
      { { "\0\x01\x1f\x7f", 4 }, "\\u0000\\u0001\\u001f\x7f" },
      { "\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80", "\xc3\xa9 \xe2\x82\xac \xf0\x9f\x98\x80" },
      { "\xed\x9f\xbf \xee\x80\x80 \xf4\x8f\xbf\xbf",
        "\xed\x9f\xbf \xee\x80\x80 \xf4\x8f\xbf\xbf" },
      { "a\x80z", "a?z" },            // a stray continuation
      { "\xc3", "?" },                // cut off
      { "\xe2\x82\"", "??\\\"" },     // cut off by a quote
      { "\xc0\xaf\xc1\xbf", "????" }, // two bytes for one
      { "\xe0\x9f\xbf", "???" },      // three bytes for two
      { "\xf0\x8f\xbf\xbf", "????" }, // four bytes for three
      { "\xed\xa0\x80", "???" },      // a surrogate
      { "\xf4\x90\x80\x80", "????" }, // above the last code point
      { "\xf5\xff\xfe", "???" },      // bytes that no text has
      { "\xf5\x80\x80\x80\xc1\x80", "??????" },
      { "\xe0\x80\x80\xf0\x80\x80\x80", "???????" },
      { "\xc2\x80 \xe0\xa0\x80 \xf0\x90\x80\x80", "\xc2\x80 \xe0\xa0\x80 \xf0\x90\x80\x80" },
      { "\xdf\xbf \xef\xbf\xbf", "\xdf\xbf \xef\xbf\xbf" },
      { "\xf0\x9f\x98z", "???z" },
   };
   for ( auto const & [text, wanted] : cases ) {
      std::string expected;
      for ( char const c : std::string( wanted ) ) {
         expected += c == '?' ? "\xEF\xBF\xBD" : std::string( 1, c );
      }
      auto const quoted = [&, part = text]( RendererV2 & r ) { r.writeQuotedString( part ); };
      EXPECT_EQ( rendered( OutputFormat_t::JSON, quoted ), expected );
      auto const value = [&, part = text]( RendererV2 & r ) {
         r.writeJsonValue( Vorn::String( part ) );
      };
      EXPECT_EQ( rendered( OutputFormat_t::JSON, value ), '"' + expected + '"' );
   }
}

Pelx::IpGenPrefix ip4( uint32_t address, uint8_t length ) {
   return Pelx::IpGenPrefix( Pelx::Ip4Prefix{ address, length } );
}

Pelx::IpGenPrefix ip6( std::array< uint16_t, 8 > const & groups, uint8_t length ) {
   Pelx::Ip6Prefix prefix{ {}, length };
   for ( size_t i = 0; i < 16; ++i ) {
      prefix.address.bytes[i] =
         static_cast< uint8_t >( i % 2 ? groups[i / 2] : groups[i / 2] >> 8 );
   }
   return Pelx::IpGenPrefix( prefix );
}

TEST( Prefix, HasOneText ) {
   struct {
      Pelx::IpGenPrefix prefix;
      std::string text;
   } const cases[] = {
      { {}, "0.0.0.0/0" },
      { ip4( 0x0a010000, 16 ), "10.1.0.0/16" },
      { ip4( 0xffffffff, 32 ), "255.255.255.255/32" },
      { ip4( 0x0963c864, 9 ), "9.99.200.100/9" },
      { ip6( {}, 0 ), "::/0" },
      { ip6( { 0, 0, 0, 0, 0, 0, 0, 1 }, 128 ), "::1/128" },
      { ip6( { 0x2001, 0xdb8 }, 32 ), "2001:db8::/32" },
      { ip6( { 0, 1, 0, 0, 2, 0, 0, 3 }, 128 ), "0:1::2:0:0:3/128" },    // the first run of two
      { ip6( { 1, 0, 0, 2, 0, 0, 0, 3 }, 128 ), "1:0:0:2::3/128" },      // the longest run
      { ip6( { 1, 0, 2, 3, 4, 5, 6, 7 }, 128 ), "1:0:2:3:4:5:6:7/128" }, // no run of one
      { ip6( { 0xabcd, 0xef, 0x12, 3, 0x4567, 8, 9, 0xa }, 99 ), "abcd:ef:12:3:4567:8:9:a/99" },
      { ip6( { 0, 0, 0, 0, 0, 0xffff, 0xc000, 0x201 }, 128 ), "::ffff:192.0.2.1/128" },
      { ip6( { 0, 0, 0, 0, 0, 0xfffe, 0xc000, 0x201 }, 128 ), "::fffe:c000:201/128" },
      { ip6( { 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff, 0xffff }, 128 ),
        "ffff:ffff:ffff:ffff:ffff:ffff:ffff:ffff/128" },
   };
   for ( auto const & [prefix, text] : cases ) {
      EXPECT_EQ(
         rendered( OutputFormat_t::TEXT, [&, p = prefix]( auto & r ) { r.writeString( p ); } ),
         text );
      for ( size_t size = 0; size <= text.size() + 2; ++size ) {
         std::string buffer( text.size() + 3, '#' );
         std::string wanted = buffer;
         if ( size > 0 ) {
            wanted.replace( 0, std::min( size, text.size() + 1 ),
                            text.substr( 0, size - 1 ) + '\0' );
         }
         EXPECT_EQ( Pelx::to_stringb( buffer.data(), size, prefix ), text.size() );
         EXPECT_EQ( buffer, wanted ) << size;
      }
   }
}

} // namespace
