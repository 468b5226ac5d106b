/* What the smallest host needs of the system: a loaded library, and a thread that outlives it. */
#ifndef KEST_TESTS_LOAD_SYSTEM_H_
#define KEST_TESTS_LOAD_SYSTEM_H_

#ifdef __cplusplus
extern "C" {
#endif

/* Null when it cannot be loaded; says why on standard error. */
void* OpenLibrary(const char* path);
void* FindEntry(void* library, const char* name);
void CloseLibrary(void* library);
/* Whether the library is still in the process. */
int IsLoaded(const char* path);

/* A thread that does one piece of work and then lingers until EndThread. */
struct Thread;
struct Thread* StartThread(void (*work)(void* context), void* context);
/* Returns when the work is done. */
void AwaitWork(struct Thread* thread);
/* Lets the thread end, and says whether it did within ten seconds. */
int EndThread(struct Thread* thread);

#ifdef __cplusplus
}
#endif

#endif /* KEST_TESTS_LOAD_SYSTEM_H_ */
