#include "Entry.h"

int main(int argc, char **argv)
{
    return orvel::Entry::main(argc, argv);
}
