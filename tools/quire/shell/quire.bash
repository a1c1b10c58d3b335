# Completion of quire in bash. Installed, it is found by itself; else: source <(quire completion bash)

_quire() {
    local text description
    COMPREPLY=()
    # The program itself knows what fits: one line a word, "word<TAB>description".
    while IFS=$'\t' read -r text description; do
        case $text in
        :files)
            compopt -o filenames 2>/dev/null
            mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -f -- "${COMP_WORDS[COMP_CWORD]}")
            ;;
        :directories)
            compopt -o filenames 2>/dev/null
            mapfile -t -O "${#COMPREPLY[@]}" COMPREPLY < <(compgen -d -- "${COMP_WORDS[COMP_CWORD]}")
            ;;
        *)
            COMPREPLY+=("$text")
            ;;
        esac
    done < <("${COMP_WORDS[0]}" completion bash -- "${COMP_WORDS[@]:1:COMP_CWORD}" 2>/dev/null)
}

complete -F _quire quire
