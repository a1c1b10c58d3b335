# Completion of quire in fish. Installed, it is found by itself; else: quire completion fish | source

function __quire_complete
    set -l typed (commandline --tokenize --cut-at-cursor --current-process)
    set -l current (commandline --cut-at-cursor --current-token)
    test (count $current) -gt 0; or set current ''
    # The program itself knows what fits: one line a word, "word<TAB>description".
    for line in ($typed[1] completion fish -- $typed[2..-1] $current 2>/dev/null)
        switch $line
            case :files
                __fish_complete_path "$current"
            case :directories
                __fish_complete_directories "$current"
            case '*'
                echo $line
        end
    end
end

complete --command quire --no-files --arguments '(__quire_complete)'
