#!/bin/bash
# What bash offers behind words of a command line. Usage: check_completion.sh FERROWEN
set -u
source <("$1" completion bash) || exit 1
# The two helpers of the bash-completion package, as far as the function uses them.
_init_completion() { words=("${line[@]}"); cword=$((${#line[@]} - 1)); cur=${line[cword]}; prev=${line[cword - 1]}; }
_filedir() { COMPREPLY=("files${1:-}"); }

failed=0
# offers EXPECTED WORD...: the last word is the one being typed.
offers() {
  local expected=$1 line
  shift
  line=(ferrowen "$@")
  COMPREPLY=()
  _ferrowen
  if [ "${COMPREPLY[*]-}" != "$expected" ]; then
    echo "behind '$*': '${COMPREPLY[*]-}' instead of '$expected'"
    failed=1
  fi
}

offers "settings" set
offers "show get set backup restore reset" settings ""
offers "settings" --home "build" se
offers "files" build ""
offers "files" run ""
offers "--gmapsupp" build map.pbf --gm
offers "--help --hgt --home" build --h
offers "files-d" build --output ""
offers "yes clip no" build --contours ""
offers "" build --name ""
offers "files" typ show ""
offers "--fid" typ new s --f
offers "polygons points" doctor --kind p
offers "--home" -- --hom
exit $failed
