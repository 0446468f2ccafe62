# Removes the files that the installations of this build brought, and the folders of our own that are
# then empty. Run in the build's folder; $DESTDIR counts as it did for the installation.

file(GLOB manifests install_manifest*.txt)
if(NOT manifests)
   message(FATAL_ERROR "Nothing was installed from this build: there is no install_manifest.txt")
endif()
foreach(manifest IN LISTS manifests)
   file(STRINGS "${manifest}" files)
   foreach(file IN LISTS files)
      file(REMOVE "$ENV{DESTDIR}${file}")
      cmake_path(GET file PARENT_PATH folder)
      while(folder MATCHES "/(TrafficPolicy|traffic-policy)(/|$)")
         list(APPEND folders "$ENV{DESTDIR}${folder}")
         cmake_path(GET folder PARENT_PATH folder)
      endwhile()
   endforeach()
   file(REMOVE "${manifest}")
endforeach()

list(REMOVE_DUPLICATES folders)
list(SORT folders ORDER DESCENDING) # the inner ones first
foreach(folder IN LISTS folders)
   file(GLOB rest "${folder}/*")
   if(NOT rest)
      file(REMOVE_RECURSE "${folder}")
   endif()
endforeach()
