// What a first program with an installed copy looks like: one include, one library.
#include <RkUtilities/RkUtilities.h>

int main()
{
    return 0;
}
