#compdef quire
# Completion of quire in zsh. Installed, it is found by itself; else: source <(quire completion zsh)

_quire() {
    local line
    local -a found
    # The program itself knows what fits: one line a word, "word<TAB>description".
    for line in ${(f)"$("${words[1]}" completion zsh -- "${(@Q)words[2,CURRENT]}" 2>/dev/null)"}; do
        case $line in
        (:files) _files ;;
        (:directories) _files -/ ;;
        (*) found+=("${${line%%$'\t'*}//:/\\:}:${line#*$'\t'}") ;;
        esac
    done
    (($#found)) && _describe 'quire' found
}

if [[ $funcstack[1] == _quire ]]; then
    _quire "$@"
else
    compdef _quire quire
fi
