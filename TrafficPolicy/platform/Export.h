// What a shared library exports. Everything else in it is hidden.
//
// An exported class has one type information, one vtable and one type record in a process, however
// many shared objects use it. A static build (TRAFFIC_POLICY_STATIC) exports nothing: a plug-in
// that links the archive keeps the library to itself.

#pragma once

#ifdef TRAFFIC_POLICY_STATIC
#define TRAFFIC_POLICY_API
#else
#define TRAFFIC_POLICY_API __attribute__( ( visibility( "default" ) ) )
#endif
