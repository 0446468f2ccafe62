// Output that meets the end of the buffer, at every byte of every operation.

#include "TrafficPolicy/views/RendererV2.h"
#include "tests/Support.h"

#include <array>
#include <functional>
#include <vector>

namespace {

using wendo::JsonMember;
using wendo::RendererV2;

struct Storage {
   static constexpr size_t guard = 64;
   explicit Storage( size_t capacity )
      : bytes( capacity + guard, '#' ) {}
   std::string bytes;
};

// A buffer with guard bytes behind its end.
class Guarded
   : private Storage
   , public wendo::PrintBuffer {
public:
   explicit Guarded( size_t capacity )
      : Storage( capacity )
      , PrintBuffer( bytes.data(), capacity ) {}
   void flush() override {
      text_ += committed();
      discard();
   }
   std::string text() {
      flush();
      EXPECT_EQ( bytes.substr( bytes.size() - guard ), std::string( guard, '#' ) );
      return text_;
   }

private:
   void makeRoom() override { flush(); }
   std::string text_;
};

struct Operation {
   wendo::OutputFormat_t format;
   std::function< void( RendererV2 & ) > write;
};

std::vector< Operation > operations() {
   static constexpr wendo::JsonKey key( "aNameAsLongAsThereIsRoomForIt" );
   static constexpr uint64_t large = ~uint64_t{ 0 };
   static constexpr Classification::NumericalRange range{ ~0u, ~0u };
   Pelx::IpGenPrefix const prefix( Pelx::Ip6Prefix{
      { { 255, 254, 253, 252, 251, 250, 249, 248, 247, 246, 245, 244, 243, 242, 241, 240 } },
      128 } );
   std::vector< Operation > result;
   auto const add = [&]( wendo::OutputFormat_t format, auto const & write ) {
      result.push_back( { format, write } );
   };
   auto const text = wendo::OutputFormat_t::TEXT;
   auto const json = wendo::OutputFormat_t::JSON;
   add( text, []( RendererV2 & r ) { r.writeString( "a literal" ); } );
   add( text, []( RendererV2 & r ) { r.eol(); } );
   add( text, []( RendererV2 & r ) { r.writeString( large ); } );
   add( text, []( RendererV2 & r ) { r.writeString( ~uint32_t{ 0 } ); } );
   add( text, [=]( RendererV2 & r ) { r.writeString( prefix ); } );
   add( text, []( RendererV2 & r ) { r.writeString( wendo::JustifyLeft{ "field", 40 } ); } );
   add( text, []( RendererV2 & r ) { r.writeString( wendo::indentation( 16 ) ); } );
   for ( size_t const size : { 1, 7, 8, 9, 61, 62, 63, 64, 65, 320 } ) {
      Vorn::String const plain( std::string( size, 'p' ) );
      Vorn::String const odd( std::string( size, '\n' ) );
      add( text, [=]( RendererV2 & r ) { r._addText( "label", plain ); } );
      add( json, [=]( RendererV2 & r ) { r._addJsonKeyValuePair( key, plain ); } );
      add( json, [=]( RendererV2 & r ) { r._addJsonKeyValuePair( wendo::listElement, odd ); } );
      add( json, [=]( RendererV2 & r ) { r._startJsonObject( plain ); } );
      add( json, [=]( RendererV2 & r ) { r._addJsonObject( plain, JsonMember{ key, odd } ); } );
      add( json, [=]( RendererV2 & r ) {
         r._addJsonListEntry( JsonMember{ key, plain }, JsonMember{ key, plain } );
      } );
      add( json, [=]( RendererV2 & r ) { r._addJsonKeyValuePair( odd, true ); } );
   }
   add( json, []( RendererV2 & r ) { r._startJsonObject( key ); } );
   add( json, []( RendererV2 & r ) { r._startJsonList( key ); } );
   add( json, []( RendererV2 & r ) { r._startJsonListEntry(); } );
   add( json, []( RendererV2 & r ) { r.endJsonDict(); } );
   add( json, []( RendererV2 & r ) { r.endJsonRoot(); } );
   add( json, []( RendererV2 & r ) { r._addJsonKeyValuePair( key, range ); } );
   add( json, []( RendererV2 & r ) { r._addJsonList( key, std::array{ &range } ); } );
   add( json, []( RendererV2 & r ) { r._addJsonList( key, std::array{ &range, &range } ); } );
   add( json, []( RendererV2 & r ) { r._addJsonKeyValuePair( key, large ); } );
   add( json, []( RendererV2 & r ) { r._addJsonKeyValuePair( key, false ); } );
   add( json, []( RendererV2 & r ) { r._addJsonKeyValuePair( key, -2.2250738585072014e-308 ); } );
   add( json, [=]( RendererV2 & r ) { r._addJsonKeyValuePair( key, prefix ); } );
   return result;
}

// Fills a buffer of the capacity up to some byte, then writes twice.
std::string written( Operation const & operation, size_t capacity, size_t filled ) {
   Guarded buffer( capacity );
   RendererV2 renderer( operation.format, buffer );
   std::string const before( filled, '.' );
   renderer.writeString( before.data(), before.size() );
   operation.write( renderer );
   operation.write( renderer );
   return buffer.text();
}

TEST( BufferBoundary, ChangesNoByteOfTheOutput ) {
   constexpr size_t small = 500;
   auto const all = operations();
   for ( size_t i = 0; i < all.size(); ++i ) {
      std::string const wanted = written( all[i], 10'000, 0 );
      EXPECT_FALSE( wanted.empty() );
      for ( size_t filled = 0; filled <= small; ++filled ) {
         ASSERT_EQ( written( all[i], small, filled ), std::string( filled, '.' ) + wanted )
            << "operation " << i << " behind " << filled << " bytes";
      }
   }
}

} // namespace
