break zorvan_gdb_stop
run
up
print name
print alias
print none
print saved
print array
print arrayCopy
print names
print list
print longer
print fixed
print matrix
print tree
print emptyTree
print map
print handed
info sharedlibrary zorvancow
info auto-load python-scripts
kill
