# Completion of lxbridge for fish.
function __lxbridge_is
    set -l words (commandline -opc)
    test (count $words) -gt 1; and contains -- "$words[2]" $argv
end

function __lxbridge_first
    test (count (commandline -opc)) -eq 1
end

function __lxbridge_fields
    set -l before (string replace -r '[^,]*$' '' -- (commandline -ct | string replace -r '^--fields=' ''))
    printf '%s\n' $before{all,(lxbridge fields 2>/dev/null | string split -f 1 ' ')}
end

complete -c lxbridge -n __lxbridge_first -a xmp -d 'print metadata as XMP'
complete -c lxbridge -n __lxbridge_first -a pool -d 'print the items of files'
complete -c lxbridge -n __lxbridge_first -a fields -d 'list properties'
complete -c lxbridge -n __lxbridge_first -a help -d 'print the options of a command'
complete -c lxbridge -n '__lxbridge_is help' -x -a 'xmp pool fields'
complete -c lxbridge -n 'not __lxbridge_is pool fields' -l format -x -a 'rdf json flat csv tsv' -d 'form of results'
complete -c lxbridge -n 'not __lxbridge_is pool fields' -l fields -x -a '(__lxbridge_fields)' -d 'these properties only'
complete -c lxbridge -n 'not __lxbridge_is pool fields' -l namespace -x -d 'PREFIX=URI: let a prefix stand for a namespace'
complete -c lxbridge -n 'not __lxbridge_is pool fields' -l decimal -d 'numbers and booleans as such'
complete -c lxbridge -n 'not __lxbridge_is pool fields' -l facts -d 'add the facts of the file'
complete -c lxbridge -n 'not __lxbridge_is pool fields' -l qualifiers -d 'write qualifiers'
complete -c lxbridge -n 'not __lxbridge_is pool fields' -l separator -x -d 'text between the items of an array'
complete -c lxbridge -n 'not __lxbridge_is pool fields' -l header -d 'print the names of the columns first'
complete -c lxbridge -n 'not __lxbridge_is pool fields' -l warnings -d 'report what of a packet was skipped'
complete -c lxbridge -n 'not __lxbridge_is pool fields' -l sidecar -d 'write packets beside the files'
complete -c lxbridge -n 'not __lxbridge_is pool fields' -l output -r -F -d 'write packets below a folder'
complete -c lxbridge -n 'not __lxbridge_is pool fields' -l overwrite -d 'replace side-cars that exist'
complete -c lxbridge -n '__lxbridge_is pool' -l format -x -a 'text json html' -d 'form of results'
complete -c lxbridge -n '__lxbridge_is pool' -l all -d 'deleted items too'
complete -c lxbridge -n '__lxbridge_is fields' -l format -x -a 'text json' -d 'form of results'
complete -c lxbridge -n 'not __lxbridge_is fields' -l unordered -d 'print results as soon as they are there'
complete -c lxbridge -n 'not __lxbridge_is fields' -l errors -d 'print a line of JSON for a result that is missing'
complete -c lxbridge -s r -l recursive -d 'read all files in folders'
complete -c lxbridge -l sort -d 'in the byte order of the paths'
complete -c lxbridge -l include -x -d 'only files whose name matches'
complete -c lxbridge -l exclude -x -d 'no files and folders whose name matches'
complete -c lxbridge -l ext -x -d 'only files with these extensions'
complete -c lxbridge -l files-from -r -F -d 'read more file names from a list'
complete -c lxbridge -s 0 -l null -d 'the names of the list end in zero bytes'
complete -c lxbridge -s j -l jobs -x -d 'use so many processes'
complete -c lxbridge -l timeout -x -d 'give up on a file that takes longer, in seconds'
complete -c lxbridge -l progress -d 'report progress'
complete -c lxbridge -l summary -d 'report the number of files of each status and kind'
complete -c lxbridge -l pretty -d 'indent JSON'
complete -c lxbridge -l color -x -a 'auto always never' -d 'colour results and messages'
complete -c lxbridge -s h -l help -d 'print the help'
complete -c lxbridge -s V -l version -d 'print the version'
