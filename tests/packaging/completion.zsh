#!/usr/bin/zsh -f
# completion.zsh [FOLDER]: what zsh offers, with the completion of that folder or of its own ones, for lines typed so far.
# A shell in a terminal of its own is typed to; in it, what is offered is printed instead of shown.
zmodload zsh/zpty || exit 1
folder=${1:+${1:A}}
scratch=$(mktemp -d)
trap 'zpty -d shell 2>/dev/null; rm -rf $scratch' EXIT
cd $scratch
mkdir exports "older exports"
touch alarms.json persons.json notes.txt client.key

cat >setup.zsh <<'SETUP'
PROMPT= RPROMPT= HISTFILE=
unset zle_bracketed_paste
[[ -z $1 ]] || fpath=($1 $fpath)
autoload -Uz compinit
compinit -u -D
zstyle ':completion:*' completer _complete
# What completion adds is printed, with "=" cut off where a value follows.
compadd() {
    if [[ ${@[1,(i)(-|--)]} == *-(O|A|D)\ * ]]; then
        builtin compadd "$@"
        return
    fi
    local -a hits
    builtin compadd -A hits "$@"
    builtin compadd "$@"
    local code=$?
    (( $#hits )) && print -rl -- "offer:"${^hits}
    return $code
}
offers() { compprefuncs=(begin); zle -M ""; zle list-choices; print -r -- "end:"; zle kill-whole-line }
begin() { compprefuncs=(begin) }
zle -N offers
bindkey '^I' offers
stty -echo
print -r -- "ready:"
SETUP

zpty shell "cd ${(q)scratch}; TERM=dumb exec zsh -f -i"
zpty -w shell "source ./setup.zsh ${(q)folder}"
zpty -r shell text '*ready:*' || exit 1

wrong=0
expect() {   # LINE WORDS: the words, sorted, that are offered at the end of the line
    local text
    zpty -w -n shell "$1"$'\t'
    zpty -r shell text '*end:*' || exit 1
    local -aU offered
    offered=(${${(M)${(f)${text//$'\r'/}}:#offer:*}#offer:})
    offered=(${(oQ)offered%=})
    [[ ${(j:|:)offered} == "$2" ]] && return
    print -r -- "\"$1\" offers \"${(j:|:)offered}\", not \"$2\""
    wrong=1
}

expect "fetchyard " "check|cipher|demo|remove|resume|run|share-key|tasks|ui"
expect "fetchyard r" "remove|resume|run"
expect "fetchyard --s" "--save|--site|--station"
expect "fetchyard --data mine ta" "tasks"
expect "fetchyard run " "alarms.json|exports|older exports|persons.json"
expect "fetchyard run al" "alarms.json"
expect "fetchyard run --e" "--encipher"
expect "fetchyard tasks --j" "--json"
expect "fetchyard demo --out e" "exports"
expect "fetchyard --log n" "notes.txt"
expect "fetchyard share-key c" "client.key"
expect "fetchyard ui --colours " "dark|light|system"
expect "fetchyard-station " "account|import|seed|serve|trust"
expect "fetchyard-station serve --p" "--port|--port-file"
expect "fetchyard-station account " "add"
exit $wrong
