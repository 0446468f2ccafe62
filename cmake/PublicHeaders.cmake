# The library's public headers: these are installed, and nothing else is.
#
# What they promise:
# - Source: what compiles with a version compiles without an edit with every later one of the same
#   minor version (0.2.x); from 1.0 on, of the same major version.
# - ABI: a program that was linked with a shared library runs with every later one of the same SONAME
#   (libtrafficpolicy.so.0). A change that breaks this raises TP_SOVERSION.
# - Not promised: the layout of private classes, names that begin with vorn (macros: VORN_), the texts
#   of assertions and traces.
#
# Each compiles on its own, and includes nothing private: tests/consumers compiles every one from an
# installed copy.

# One for each major release and each break of the ABI.
set(TP_SOVERSION 0)

set(TP_PUBLIC_HEADERS
    # All that a program includes: show objects, clearing, interrupts, traces.
    TrafficPolicyShowCliHelper.h
    engine/ShowTrafficPolicyBase.h
    engine/ShowTrafficPolicyCpu.h
    engine/ShowTrafficPolicyInterface.h
    counters/TrafficPolicyCounter.h
    platform/wendo/Interrupt.h
    # Records, to be filled.
    platform/records/ActionRecords.h
    platform/records/ConfigRecords.h
    platform/records/CounterRecords.h
    platform/records/MatchOption.h
    platform/records/MatchRecords.h
    platform/records/Ranges.h
    platform/records/StatusRecords.h
    # Values in them.
    platform/values/EnumNames.h
    platform/values/IntfId.h
    platform/values/IpGenPrefix.h
    platform/values/UniqueId.h
    platform/values/VrfName.h
    # The framework's part that these show: handles, strings, collections, creation, and construction
    # of a class by its name.
    platform/vorn/AccessError.h
    platform/vorn/Assert.h
    platform/vorn/Construct.h
    platform/vorn/Create.h
    platform/vorn/HashMap.h
    platform/vorn/IndexedArray.h
    platform/vorn/OrderedMap.h
    platform/vorn/Ptr.h
    platform/vorn/PtrInterface.h
    platform/vorn/SortedArray.h
    platform/vorn/String.h
    platform/vorn/Threading.h
    platform/vorn/TypeRecord.h
    platform/vorn/Value.h
    # Compiled into programs, not for use by name: what the ones above are made of.
    engine/ShowTrafficPolicySide.h
    platform/Export.h
    platform/vorn/Attribute.h
    platform/vorn/AttributeKind.h
    platform/vorn/Children.h
    platform/vorn/DeclaredLines.h
    platform/vorn/Hash.h
    platform/vorn/HashTable.h
    platform/vorn/InlineVector.h
    platform/vorn/Inputs.h
    platform/vorn/Memory.h
    platform/vorn/Prefetch.h
    platform/vorn/Rare.h
    platform/vorn/TypeName.h
    platform/wendo/PlainText.h)
