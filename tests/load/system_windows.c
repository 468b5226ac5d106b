#include <windows.h>
/* After windows.h, whose types it needs. */
#include <stdio.h>
#include <stdlib.h>

#include "tests/load/system.h"

void* OpenLibrary(const char* path) {
  HMODULE library = LoadLibraryA(path);
  if (library == NULL) fprintf(stderr, "%s: system error %lu\n", path, GetLastError());
  return library;
}

void* FindEntry(void* library, const char* name) {
  void* entry;
  *(FARPROC*)&entry = GetProcAddress(library, name);
  return entry;
}

void CloseLibrary(void* library) {
  FreeLibrary(library);
}

int IsLoaded(const char* path) {
  return GetModuleHandleA(path) != NULL;
}

struct Thread {
  HANDLE id;
  HANDLE done;
  HANDLE mayEnd;
  void (*work)(void* context);
  void* context;
};

static DWORD WINAPI Run(void* argument) {
  struct Thread* thread = argument;
  thread->work(thread->context);
  SetEvent(thread->done);
  WaitForSingleObject(thread->mayEnd, INFINITE);
  return 0;
}

struct Thread* StartThread(void (*work)(void* context), void* context) {
  struct Thread* thread = calloc(1, sizeof(*thread));
  if (thread == NULL) abort();
  thread->work = work;
  thread->context = context;
  thread->done = CreateEventA(NULL, FALSE, FALSE, NULL);
  thread->mayEnd = CreateEventA(NULL, FALSE, FALSE, NULL);
  thread->id = CreateThread(NULL, 0, Run, thread, 0, NULL);
  if (thread->id == NULL) abort();
  return thread;
}

void AwaitWork(struct Thread* thread) {
  WaitForSingleObject(thread->done, INFINITE);
}

int EndThread(struct Thread* thread) {
  SetEvent(thread->mayEnd);
  if (WaitForSingleObject(thread->id, 10000) != WAIT_OBJECT_0) return 0;
  CloseHandle(thread->id);
  CloseHandle(thread->done);
  CloseHandle(thread->mayEnd);
  free(thread);
  return 1;
}
