#define _GNU_SOURCE /* pthread_timedjoin_np */
#include <dlfcn.h>
#include <pthread.h>
#include <semaphore.h>
#include <stdio.h>
#include <stdlib.h>
#include <time.h>

#include "tests/load/system.h"

void* OpenLibrary(const char* path) {
  void* library = dlopen(path, RTLD_NOW | RTLD_LOCAL);
  if (library == NULL) fprintf(stderr, "%s\n", dlerror());
  return library;
}

void* FindEntry(void* library, const char* name) {
  return dlsym(library, name);
}

void CloseLibrary(void* library) {
  dlclose(library);
}

int IsLoaded(const char* path) {
  return dlopen(path, RTLD_NOW | RTLD_NOLOAD) != NULL;
}

struct Thread {
  pthread_t id;
  sem_t done;
  sem_t mayEnd;
  void (*work)(void* context);
  void* context;
};

static void* Run(void* argument) {
  struct Thread* thread = argument;
  thread->work(thread->context);
  sem_post(&thread->done);
  sem_wait(&thread->mayEnd);
  return NULL;
}

struct Thread* StartThread(void (*work)(void* context), void* context) {
  struct Thread* thread = calloc(1, sizeof(*thread));
  if (thread == NULL) abort();
  thread->work = work;
  thread->context = context;
  sem_init(&thread->done, 0, 0);
  sem_init(&thread->mayEnd, 0, 0);
  if (pthread_create(&thread->id, NULL, Run, thread) != 0) abort();
  return thread;
}

void AwaitWork(struct Thread* thread) {
  sem_wait(&thread->done);
}

int EndThread(struct Thread* thread) {
  sem_post(&thread->mayEnd);
  struct timespec limit;
  clock_gettime(CLOCK_REALTIME, &limit);
  limit.tv_sec += 10;
  if (pthread_timedjoin_np(thread->id, NULL, &limit) != 0) return 0;
  free(thread);
  return 1;
}
