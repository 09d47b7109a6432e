# Shared by the scripts of this folder: where things are, how a step reports, how a preset is built.
# Sourced, never run.
set -euo pipefail

root=$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)
cores=$(nproc 2>/dev/null || echo 2)
if [[ ${CI:-} != true && -t 2 ]]; then live=1; else live=0; fi

say() { printf '%s\n' "$*" >&2; }

# die MESSAGE [REMEDY]: one clear message, then out.
die() {
  printf '%s: %s\n' "${0##*/}" "$1" >&2
  [[ $# -lt 2 ]] || printf '  remedy: %s\n' "$2" >&2
  exit 1
}

# The comment block at the head of the calling script is its help text.
print_help() { sed -n '2,/^[^#]/{/^#/s/^# \{0,1\}//p;}' "$0"; }

show_counter() {
  local line
  while IFS= read -r line; do
    [[ $line != \[*/*\]* ]] || printf '\r  %s ' "${line%%]*}]" >&2
  done
}

# logged LOG COMMAND...: runs a command with its output in LOG; on a terminal ninja's counter shows as it goes.
logged() {
  local log=$1 status=0
  shift
  if [[ $live = 1 ]]; then
    "$@" 2>&1 </dev/null | tee -a "$log" | show_counter || status=1
    printf '\r\033[K' >&2
  else
    "$@" >>"$log" 2>&1 </dev/null || status=1
  fi
  return $status
}

# build_preset PRESET [TARGET...]: configures when needed and builds, quietly; a failure shows the log's end.
build_preset() {
  local preset=$1 log=$root/build/$1.log start=$SECONDS
  shift
  mkdir -p "$root/build"
  : >"$log"
  if [[ ! -f $root/build/$preset/build.ninja ]]; then
    say "configuring $preset"
    (cd "$root" && logged "$log" cmake --preset "$preset") || build_failed "$preset" "$log"
  fi
  say "building $preset"
  (cd "$root" && logged "$log" cmake --build "build/$preset" --parallel "$cores" ${@:+--target "$@"}) ||
    build_failed "$preset" "$log"
  say "built $preset in $((SECONDS - start)) s"
}

build_failed() {
  grep -nE 'error|FAILED|CMake Error' "$2" | head -20 >&2 || tail -20 "$2" >&2
  die "the $1 build failed; the whole log is $2" "fix what it names and start again; scripts/setup installs missing packages"
}
