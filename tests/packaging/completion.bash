#!/bin/bash
# completion.bash FOLDER: what bash offers, with the completion of that folder, for lines typed so far.
set -u
source /usr/share/bash-completion/bash_completion
for file in "$1"/*; do source "$file"; done
wrong=0

scratch=$(mktemp -d)
trap 'rm -rf "$scratch"' EXIT
cd "$scratch"
mkdir exports "older exports"
touch alarms.json persons.json notes.txt client.key

expect() {   # LINE WORDS: the words, sorted, that are offered at the end of the line
  COMP_LINE=$1 COMP_POINT=${#1} COMPREPLY=()
  # As readline parts it: at blanks, and an equals sign is a word.
  read -ra COMP_WORDS <<<"${1//=/ = }"
  [[ $1 != *[\ ] ]] || COMP_WORDS+=("")
  COMP_CWORD=$((${#COMP_WORDS[@]} - 1))
  local program=${COMP_WORDS[0]}
  "$(complete -p "$program" | sed 's/.*-F \([^ ]*\) .*/\1/')" "$program" "${COMP_WORDS[COMP_CWORD]}" "${COMP_WORDS[COMP_CWORD - 1]}"
  local offered
  offered=$(printf '%s\n' "${COMPREPLY[@]}" | LC_ALL=C sort | paste -sd '|')
  [[ $offered == "$2" ]] && return
  echo "\"$1\" offers \"$offered\", not \"$2\""
  wrong=1
}

expect "fetchyard " "check|cipher|demo|remove|resume|run|share-key|tasks|ui"
expect "fetchyard r" "remove|resume|run"
expect "fetchyard --s" "--save|--site|--station"
expect "fetchyard --data mine ta" "tasks"
expect "fetchyard --data=mine ta" "tasks"
expect "fetchyard --verbose u" "ui"
expect "fetchyard run " "alarms.json|exports|older exports|persons.json"
expect "fetchyard run al" "alarms.json"
expect "fetchyard run alarms.json p" "persons.json"
expect "fetchyard --station http://127.0.0.1:8080 check p" "persons.json"
expect "fetchyard run --e" "--encipher"
expect "fetchyard run --" "--data|--discard|--encipher|--help|--log|--no-own-plugins|--plugin|--save|--site|--station|--user|--verbose|--version"
expect "fetchyard tasks --j" "--json"
expect "fetchyard run --j" ""
expect "fetchyard tasks " ""
expect "fetchyard resume " ""
expect "fetchyard --save " "exports|older exports"
expect "fetchyard demo --out e" "exports"
expect "fetchyard --save=ex" "exports"
expect "fetchyard --log n" "notes.txt"
expect "fetchyard --station " ""
expect "fetchyard share-key c" "client.key"
expect "fetchyard ui --colours " "dark|light|system"
expect "fetchyard ui --colours=d" "dark"
expect "fetchyard ui --language z" "zh"
expect "fetchyard-station " "account|import|seed|serve|trust"
expect "fetchyard-station s" "seed|serve"
expect "fetchyard-station serve --p" "--port|--port-file"
expect "fetchyard-station serve --data ex" "exports"
expect "fetchyard-station serve --key c" "client.key"
expect "fetchyard-station import n" "notes.txt"
expect "fetchyard-station trust c" "client.key"
expect "fetchyard-station account " "add"
exit $wrong
