#include <cstdio>

int main() {
   std::puts( "The installed headers are complete." );
}
