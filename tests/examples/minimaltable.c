/* The example as it is, with its table for the test instead of its main program. */
#define main MainOfMinimalHost
#include "../../examples/minimalhost/minimalhost.c"

const VX3Host* MinimalHostTable(void);

const VX3Host* MinimalHostTable(void)
{
    mainThread = pthread_self();
    return &hostTable;
}
