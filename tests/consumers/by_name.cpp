// Names no class of the library: prints those that have registered themselves, and constructs one.

#include "TrafficPolicy/platform/vorn/Construct.h"

#include <iostream>

int main() {
   for ( Vorn::TypeRecord const * type : Vorn::TypeRecord::sorted() ) {
      std::cout << type->name() << '\n';
   }
   Vorn::Value const name[] = { "edge-in" };
   return Vorn::construct( "TrafficPolicyCli::PolicyState", name )->references() == 1 ? 0 : 1;
}
