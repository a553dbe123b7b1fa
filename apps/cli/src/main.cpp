#include "program.h"

#include <iostream>

int main(int argc, char** argv) { return vesk::cli::run(argc, argv, std::cout, std::cerr); }
