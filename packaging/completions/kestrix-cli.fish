# Completion of kestrix-cli for fish.

function __kestrix_cli_scenarios
    kestrix-cli simulate --list 2>/dev/null
end

function __kestrix_cli_uris
    set -l word (commandline -ct)
    switch $word
        case 'serial:*' 'replay:*'
            set -l scheme (string split -m 1 : -- $word)[1]
            for path in (__fish_complete_path (string replace -r '^[^:]*:' '' -- $word))
                echo $scheme:$path
            end
        case '*'
            printf '%s\n' @KINDS@ simulator:(__kestrix_cli_scenarios)
    end
end

function __kestrix_cli_in
    __fish_seen_subcommand_from $argv
end

complete -c kestrix-cli -f
complete -c kestrix-cli -l settings -r -F -d 'Keep the link state in this file'
complete -c kestrix-cli -l verbose -d 'Say on standard error what happens'
complete -c kestrix-cli -s h -l help -d 'Tell what can be given'
complete -c kestrix-cli -n __fish_use_subcommand -l version -d 'Tell the version'

complete -c kestrix-cli -n __fish_use_subcommand -a decode -d 'Raw bytes to one JSON object per record'
complete -c kestrix-cli -n __fish_use_subcommand -a monitor -d 'The display of the tester, live'
complete -c kestrix-cli -n __fish_use_subcommand -a capture -d 'Keep the raw bytes of a tester in a file'
complete -c kestrix-cli -n __fish_use_subcommand -a simulate -d 'A tester in software for other programs'
complete -c kestrix-cli -n __fish_use_subcommand -a devices -d 'What each source sees, or which step fails'
complete -c kestrix-cli -n __fish_use_subcommand -a records -d 'The saved test records'
complete -c kestrix-cli -n __fish_use_subcommand -a show -d 'The measurements of a test record'
complete -c kestrix-cli -n __fish_use_subcommand -a export -d 'Write a test record to a file, or mail it'
complete -c kestrix-cli -n __fish_use_subcommand -a delete -d 'Delete a test record with its measurements'
complete -c kestrix-cli -n __fish_use_subcommand -a log -d 'Record unattended into a test record'
complete -c kestrix-cli -n __fish_use_subcommand -a verify -d 'Derives every measurement again from what the tester sent'

complete -c kestrix-cli -n 'not __fish_use_subcommand' -l seconds -x -d 'End after so many seconds'

complete -c kestrix-cli -n '__kestrix_cli_in decode' -F
complete -c kestrix-cli -n '__kestrix_cli_in decode' -l frame -x -d 'Decode one frame text'
complete -c kestrix-cli -n '__kestrix_cli_in decode' -l screen -d 'Add what the live screen shows'

complete -c kestrix-cli -n '__kestrix_cli_in monitor capture devices log' -a '(__kestrix_cli_uris)'

complete -c kestrix-cli -n '__kestrix_cli_in capture' -F
complete -c kestrix-cli -n '__kestrix_cli_in capture' -l force -d 'Overwrite an earlier capture'

complete -c kestrix-cli -n '__kestrix_cli_in simulate' -l tcp -x -d 'Serve it at this host:port'
complete -c kestrix-cli -n '__kestrix_cli_in simulate' -l pty -r -F -d 'Make a serial port of this name'
complete -c kestrix-cli -n '__kestrix_cli_in simulate' -l scenario -r -F -a '(__kestrix_cli_scenarios)' -d 'What the tester does'
complete -c kestrix-cli -n '__kestrix_cli_in simulate' -l seed -x -d 'Seed of all that happens by chance'
complete -c kestrix-cli -n '__kestrix_cli_in simulate' -l speed -x -a '1 10 100 max' -d 'Times real time'
complete -c kestrix-cli -n '__kestrix_cli_in simulate' -l list -d 'Name the built-in scenarios'

complete -c kestrix-cli -n '__kestrix_cli_in records show export delete log verify' -l documents -r -F -d 'The folder of the database'
complete -c kestrix-cli -n '__kestrix_cli_in records show verify' -l json -d 'One JSON object for each'
complete -c kestrix-cli -n '__kestrix_cli_in show' -l evidence -d 'What the tester sent for each'

complete -c kestrix-cli -n '__kestrix_cli_in export' -l csv -d 'The text that the window writes'
complete -c kestrix-cli -n '__kestrix_cli_in export' -l pdf -d 'The report of one page'
complete -c kestrix-cli -n '__kestrix_cli_in export' -l format -x -a 'csv json' -d 'For spreadsheets or programs'
complete -c kestrix-cli -n '__kestrix_cli_in export' -l output -r -F -d 'Write this new file'
complete -c kestrix-cli -n '__kestrix_cli_in export' -l mail -x -d 'Send it to this address'
complete -c kestrix-cli -n '__kestrix_cli_in export' -l smtp -x -a 'smtp:// smtps://' -d 'Through this server'
complete -c kestrix-cli -n '__kestrix_cli_in export' -l from -x -d 'Your own address'
complete -c kestrix-cli -n '__kestrix_cli_in verify' -l file -r -F -d 'Whether the database still says what this report does'
complete -c kestrix-cli -n '__kestrix_cli_in export' -l cafile -r -F -d 'Whom to believe the certificate'
complete -c kestrix-cli -n '__kestrix_cli_in export' -l password-stdin -d 'Read the password from standard input'
complete -c kestrix-cli -n '__kestrix_cli_in export' -l draft -d 'Keep the mail in the folder'

complete -c kestrix-cli -n '__kestrix_cli_in log' -l project -x -d 'Project of the test record'
complete -c kestrix-cli -n '__kestrix_cli_in log' -l company -x -d 'Its company'
complete -c kestrix-cli -n '__kestrix_cli_in log' -l address -x -d 'Its address'
complete -c kestrix-cli -n '__kestrix_cli_in log' -l operator -x -d 'Its operator'
complete -c kestrix-cli -n '__kestrix_cli_in log' -l serial -x -d 'Its serial number'
complete -c kestrix-cli -n '__kestrix_cli_in log' -l changes -d 'Store every change'
complete -c kestrix-cli -n '__kestrix_cli_in log' -l every -x -d 'Store every so many seconds'
complete -c kestrix-cli -n '__kestrix_cli_in log' -l count -x -d 'End when so many are stored'
