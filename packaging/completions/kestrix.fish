# Completion of kestrix for fish.

function __kestrix_uris
    set -l word (commandline -ct)
    switch $word
        case 'serial:*' 'replay:*' 'simulator:*'
            set -l scheme (string split -m 1 : -- $word)[1]
            for path in (__fish_complete_path (string replace -r '^[^:]*:' '' -- $word))
                echo $scheme:$path
            end
        case '*'
            printf '%s\n' @KINDS@
    end
end

complete -c kestrix -f
complete -c kestrix -l connect -x -a '(__kestrix_uris)' -d 'Look for a tester there'
complete -c kestrix -l choose -x -a '(__kestrix_uris)' -d 'Look for the tester there from now on'
complete -c kestrix -l documents -x -a '(__fish_complete_directories)' -d 'Keep the database and its settings in this folder'
complete -c kestrix -l settings -r -F -d 'Keep the settings in this file'
complete -c kestrix -l tour -x -a '(__fish_complete_directories)' -d 'Show every screen, into this folder'
complete -c kestrix -l console -d 'Look at the line itself'
complete -c kestrix -l verbose -d 'Say on standard error what happens'
complete -c kestrix -l version -d 'Tell the version'
complete -c kestrix -s h -l help -d 'Tell what can be given'
