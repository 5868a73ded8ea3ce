# corvane_product_file(<target> <file>): copies the file to UPI/upiconfig.xml beside the program, where the wrapper reads
# which product it reports for. Part of the package, and defined for a host that builds the project as a subfolder.
function(corvane_product_file target file)
    file(GENERATE OUTPUT "$<TARGET_FILE_DIR:${target}>/UPI/upiconfig.xml" INPUT "${file}")
endfunction()
