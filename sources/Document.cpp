#include "sources/Document.h"

#include "sources/FileError.h"
#include "sources/file/StateReader.h"
#include "sources/openconfig/OpenConfig.h"
#include "sources/rules/Texts.h"
#include "sources/sonic/SonicDocument.h"

#include <algorithm>

namespace tpcli {

namespace {

// As much of a document as is looked at to tell its kind.
constexpr size_t beginSize = size_t{ 256 } << 10;

// The names of the top members, as far as the text goes.
class TopNames {
public:
   explicit TopNames( std::string_view text )
      : text_( text ) {}

   // Calls the function with each name.
   template< typename Function >
   void forEach( Function const & function ) {
      int depth = 0;
      for ( ; at_ < text_.size(); ++at_ ) {
         char const c = text_[at_];
         if ( c == '{' || c == '[' ) {
            ++depth;
         } else if ( c == '}' || c == ']' ) {
            --depth;
         } else if ( c == '"' ) {
            std::string const string = takeString();
            if ( depth == 1 && isName() ) {
               function( std::string_view( string ) );
            }
         }
      }
   }

private:
   // From the quote that opens it to the one that closes it, escapes of ASCII resolved.
   std::string takeString() {
      std::string text;
      for ( ++at_; at_ < text_.size() && text_[at_] != '"'; ++at_ ) {
         if ( text_[at_] == '\\' && text_.substr( at_ + 1, 3 ) == "u00" ) {
            auto const code = parseNumber( "0x" + std::string( text_.substr( at_ + 4, 2 ) ), 0x7f );
            text += static_cast< char >( code.value_or( '?' ) );
            at_ += 5;
         } else {
            at_ += text_[at_] == '\\' ? 1 : 0;
            text += at_ < text_.size() ? text_[at_] : '?';
         }
      }
      return text;
   }
   bool isName() const {
      size_t const next = text_.find_first_not_of( " \t\r\n", at_ + 1 );
      return next != text_.npos && text_[next] == ':';
   }

   std::string_view text_;
   size_t at_ = 0;
};

// "ACL_RULE", or the key of a hash, "ACL_RULE|web|R1".
bool namesTable( std::string_view name ) {
   std::string_view const table = name.substr( 0, name.find_first_of( "|:" ) );
   return !table.empty() && table[0] >= 'A' && table[0] <= 'Z'
          && std::ranges::all_of( table, []( char c ) {
                return ( c >= 'A' && c <= 'Z' ) || ( c >= '0' && c <= '9' ) || c == '_';
             } );
}

enum class DocumentKind { stateFile, openConfig, sonic, unknown };

// What the names of a document's top members make it. What has none is a state file, or no object.
class TopKind {
public:
   void add( std::string_view name ) {
      any_ = true;
      status_ |= name == "status";
      stateFile_ |= isStateFileTop( name );
      openConfig_ |= isOpenConfigTop( name );
      sonic_ |= namesTable( name );
   }
   DocumentKind kind() const {
      // The content of the container "acl" may have a "config", too.
      return !any_ || status_ ? DocumentKind::stateFile
             : openConfig_    ? DocumentKind::openConfig
             : stateFile_     ? DocumentKind::stateFile
             : sonic_         ? DocumentKind::sonic
                              : DocumentKind::unknown;
   }

   static bool isStateFileTop( std::string_view name ) {
      return name == "config" || name == "status";
   }

private:
   bool any_ = false;
   bool stateFile_ = false;
   bool status_ = false;
   bool openConfig_ = false;
   bool sonic_ = false;
};

// By what stands in this begin of the text.
DocumentKind kindByBegin( std::string_view begin ) {
   TopKind top;
   TopNames( begin ).forEach( [&]( std::string_view name ) { top.add( name ); } );
   return top.kind();
}

DocumentKind kindOf( JsonTree const & tree ) {
   TopKind top;
   for ( JsonNode const & member : tree.root() ) {
      top.add( member.name );
   }
   return top.kind();
}

// The error of a state file with further members.
[[noreturn]] void failAsStateFile( JsonTree const & tree ) {
   JsonNode const * member = tree.root().first;
   while ( member->next && TopKind::isStateFileTop( member->name ) ) {
      member = member->next;
   }
   member->fail( "unknown member" );
}

// The "config" of an OpenConfig container has leaves; a state file's has objects.
bool hasConfigOfStateFile( JsonTree const & tree ) {
   JsonNode const * const config = tree.root().find( "config" );
   bool any = false;
   if ( config && config->isObject() ) {
      for ( JsonNode const & member : *config ) {
         any |= member.isObject() && member.name.find( ':' ) == member.name.npos;
      }
   }
   return any;
}

void readTree( JsonTree const & tree, Reading & reading ) {
   switch ( kindOf( tree ) ) {
   case DocumentKind::openConfig:
      if ( hasConfigOfStateFile( tree ) ) {
         failAsStateFile( tree );
      }
      readOpenConfig( tree, reading );
      break;
   case DocumentKind::sonic:
      readSonicDocument( tree, reading );
      break;
   case DocumentKind::stateFile:
      failAsStateFile( tree );
   case DocumentKind::unknown:
      tree.fail( tree.root(),
                 "none of the members is known: a state file has \"config\" or \"status\", an "
                 "OpenConfig document "
                    + openConfigTops() + ", one of a SONiC switch tables such as \"ACL_RULE\"" );
   }
}

} // namespace

Reading Document::read() {
   Reading reading;
   InputFile file( path_ );
   auto const begin = [&] {
      return std::string_view( file.begin(), static_cast< size_t >( file.end() - file.begin() ) );
   };
   while ( begin().size() < beginSize && file.advance( file.begin() ) ) {
   }
   // A state file is read as it comes. Anything else is told apart again when all of it is there:
   // what is known may stand behind large members that are not, and it may be no JSON at all.
   if ( kindByBegin( begin().substr( 0, beginSize ) ) == DocumentKind::stateFile ) {
      reading.state = readState( file );
   } else {
      readTree( JsonTree( file ), reading );
   }
   return reading;
}

std::string Document::defaultCounterStore() const {
   return path_ == "-" ? "" : path_ + ".counters";
}

} // namespace tpcli
