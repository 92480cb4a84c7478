#include "app/launch/Entry.h"

int main(int argc, char **argv)
{
    return Entry::main(argc, argv);
}
