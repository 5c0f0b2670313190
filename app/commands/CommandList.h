// Every command of the command-line mode, in the order the usage text lists them. A new
// command is its own file in this folder, which defines `extern const Command NameCommand`,
// and one line here. CommandRegistry.cpp reads this list to declare and to table them.
PE_COMMAND(CheckCommand)
PE_COMMAND(NormalizeCommand)
PE_COMMAND(DiffCommand)
PE_COMMAND(ChangesCommand)
PE_COMMAND(CompareProductsCommand)
PE_COMMAND(QueryCommand)
PE_COMMAND(MergeFileCommand)
PE_COMMAND(GitSetupCommand)
PE_COMMAND(ResolveCommand)
PE_COMMAND(MergeFoldersCommand)
PE_COMMAND(LogCommand)
PE_COMMAND(MatrixCommand)
