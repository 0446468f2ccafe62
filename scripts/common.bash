# shellcheck shell=bash
# Functions that ./run and ./test share.
: "${root:?is the repository, to be set before}"

# quietly COMMAND...: shows the command's output, on standard error, only if it fails. The command
# gets no standard input.
quietly() {
   local output status=0
   output=$( "$@" 2>&1 < /dev/null ) || status=$?
   if (( status != 0 )); then
      printf '%s\n' "$output" >&2
      printf 'failed: %s\n' "$*" >&2
   fi
   return "$status"
}

# with_build_lock COMMAND...: one at a time, since a build directory has room for one build.
with_build_lock() {
   mkdir -p "$root/build"
   (
      flock 9
      "$@" 9>&-
   ) 9> "$root/build/.lock"
}
