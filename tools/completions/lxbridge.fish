# Completion of lxbridge for fish.
function __lxbridge_pool
    set -l words (commandline -opc)
    test (count $words) -gt 1; and test "$words[2]" = pool
end

function __lxbridge_first
    test (count (commandline -opc)) -eq 1
end

complete -c lxbridge -n __lxbridge_first -a xmp -d 'print metadata as XMP'
complete -c lxbridge -n __lxbridge_first -a pool -d 'print what the readers saw'
complete -c lxbridge -n 'not __lxbridge_pool' -l format -x -a 'rdf json csv tsv' -d 'how results are printed'
complete -c lxbridge -n 'not __lxbridge_pool' -l fields -x -d 'columns of csv and tsv, between commas'
complete -c lxbridge -n 'not __lxbridge_pool' -l separator -x -d 'between the items of an array in csv and tsv'
complete -c lxbridge -n 'not __lxbridge_pool' -l header -d 'a first row with the names of the columns'
complete -c lxbridge -n __lxbridge_pool -l format -x -a 'text json' -d 'how results are printed'
complete -c lxbridge -n __lxbridge_pool -l all -d 'deleted items too'
complete -c lxbridge -s r -l recursive -d 'walk folders'
complete -c lxbridge -l files-from -r -F -d 'further files, one name a line of a list'
complete -c lxbridge -s 0 -l null -d 'the names of the list end in zero bytes'
complete -c lxbridge -s j -l jobs -x -d 'work in so many processes'
complete -c lxbridge -l timeout -x -d 'give up a file that takes more seconds'
complete -c lxbridge -l unordered -d 'print results as they come'
complete -c lxbridge -l progress -d 'say on standard error how far it is'
complete -c lxbridge -l summary -d 'say last how many files of each status and kind there were'
complete -c lxbridge -s h -l help -d 'print the help'
complete -c lxbridge -s V -l version -d 'print the version'
