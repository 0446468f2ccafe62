#include "cli/Schemas.h"

#include "cli/Errors.h"
#include "cli/Nearest.h"

#include <algorithm>
#include <string>

namespace tpcli {

namespace {

struct Schema {
   std::string_view name;
   std::string_view text;
};

constexpr Schema schemas[] = {
#include "SchemaTexts.inc"
};

} // namespace

std::vector< std::string_view > schemaNames() {
   std::vector< std::string_view > names;
   for ( Schema const & schema : schemas ) {
      names.push_back( schema.name );
   }
   return names;
}

std::string_view schemaText( std::string_view name ) {
   auto const * found = std::ranges::find( schemas, name, &Schema::name );
   if ( found == std::end( schemas ) ) {
      Nearest nearest( name );
      for ( Schema const & schema : schemas ) {
         nearest.offer( schema.name );
      }
      throw UsageError( "there is no schema \"" + std::string( name ) + '"'
                        + nearest.suggestion() );
   }
   return found->text;
}

} // namespace tpcli
