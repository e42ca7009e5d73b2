/* Time, memory and output of every program that is measured, ours and theirs.
 *
 * A program prints lines "case<TAB>value<TAB>unit"; smaller is better in all of them.
 * A case that depends on a count ends with it: list_ms.100000. */
#ifndef BENCH_MEASURE_H
#define BENCH_MEASURE_H

#include <stdint.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

static inline double NowSeconds(void)
{
    struct timespec now;
    clock_gettime(CLOCK_MONOTONIC, &now);
    return (double)now.tv_sec + (double)now.tv_nsec * 1e-9;
}

static inline void PrintCase(const char* name, double value, const char* unit)
{
    printf("%s\t%.6g\t%s\n", name, value, unit);
    fflush(stdout);
}

static inline void PrintCaseOf(const char* name, size_t count, double value, const char* unit)
{
    char text[128];
    snprintf(text, sizeof text, "%s.%zu", name, count);
    PrintCase(text, value, unit);
}

/* Private memory of this process in bytes; mapped files do not count. */
static inline double PrivateBytes(void)
{
    char line[256];
    long kibibytes = 0;
    FILE* status = fopen("/proc/self/status", "r");
    while (status && fgets(line, sizeof line, status))
        if (sscanf(line, "RssAnon: %ld", &kibibytes) == 1)
            break;
    if (status)
        fclose(status);
    return (double)kibibytes * 1024;
}

static inline int CompareDoubles(const void* a, const void* b)
{
    double x = *(const double*)a, y = *(const double*)b;
    return (x > y) - (x < y);
}

/* The value that `part` of them, 0 to 1, lie below. Sorts the values. */
static inline double QuantileOf(double* values, size_t count, double part)
{
    if (!count)
        return 0;
    qsort(values, count, sizeof *values, CompareDoubles);
    size_t place = (size_t)(part * (double)count);
    return values[place < count ? place : count - 1];
}

static inline double MedianOf(double* values, size_t count)
{
    return QuantileOf(values, count, 0.5);
}

/* What is measured has to work. */
static inline void Demand(int isDone, const char* what)
{
    if (isDone)
        return;
    fprintf(stderr, "%s failed\n", what);
    exit(1);
}

/* The splitmix64 generator: the same numbers on every machine. */
static inline uint64_t NextRandom(uint64_t* state)
{
    uint64_t z = (*state += 0x9E3779B97F4A7C15u);
    z = (z ^ (z >> 30)) * 0xBF58476D1CE4E5B9u;
    z = (z ^ (z >> 27)) * 0x94D049BB133111EBu;
    return z ^ (z >> 31);
}

#endif
