/* The smallest host: one thread, one queue. It loads the plugin named on its command line, starts
 * it, asks it two things, lets it hear an event on a thread of its own, stops and unloads it, and
 * does all of that twice more from a clean state, first without the stop. It exits with code 0
 * when every step came out as expected.
 *
 * A waiting task is served in the simplest way there is: `yield` takes the next piece of work from
 * the queue and runs it on the stack of the task that yields. */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "plugin/host_interface.h"
#include "tests/load/system.h"

/* ---- The queue: everything the host owes the plugin, in order ----------------------------------
 */

/* One of the three functions is set. */
struct Work {
  struct Work* next;
  KestTask task;
  KestCompletion completion;
  KestDelivery delivery;
  void* context;
  char* name;    /* of a task or an event */
  char* payload; /* of an event */
};

struct Host {
  KestHostServices services; /* first: a `self` pointer is a pointer to the host */
  struct Work* first;
  struct Work** end;
  int stopping;
  KestDelivery responses; /* of the platform service; may come on any thread */
  void* responsesContext;
  int linesLogged;
};

static char* Copy(KestText text) {
  char* copy = malloc(text.size + 1);
  if (copy == NULL) abort();
  if (text.size > 0) memcpy(copy, text.data, text.size);
  copy[text.size] = '\0';
  return copy;
}

static KestText Text(const char* text) {
  KestText view = {text, strlen(text)};
  return view;
}

static struct Work* Append(struct Host* host, KestText name, void* context) {
  struct Work* work = calloc(1, sizeof(*work));
  if (work == NULL) abort();
  work->name = Copy(name);
  work->context = context;
  *host->end = work;
  host->end = &work->next;
  return work;
}

static void Release(struct Work* work) {
  free(work->name);
  free(work->payload);
  free(work);
}

static struct Work* TakeFirst(struct Host* host) {
  struct Work* work = host->first;
  if (work == NULL) return NULL;
  host->first = work->next;
  if (host->first == NULL) host->end = &host->first;
  return work;
}

static int RunNext(struct Host* host) {
  struct Work* work = TakeFirst(host);
  if (work == NULL) return 0;
  if (work->task != NULL) {
    work->task(work->context);
  } else if (work->completion != NULL) {
    /* This host has no other plugins: every resource is missing. */
    KestResponse response = {0};
    response.status = 404;
    response.message = Text("Not found");
    work->completion(work->context, &response);
  } else {
    KestBytes body = {(const uint8_t*)work->payload, strlen(work->payload)};
    work->delivery(work->context, Text(work->name), Text("application/json"), body);
  }
  Release(work);
  return 1;
}

static void RunAll(struct Host* host) {
  while (RunNext(host)) {
  }
}

/* ---- The service table ------------------------------------------------------------------------
 */

static struct Host* HostOf(const KestHostServices* self) {
  return (struct Host*)self;
}

static bool SendRequest(const KestHostServices* self, const KestRequest* request,
                        KestCompletion completion, void* context) {
  struct Host* host = HostOf(self);
  if (host->stopping) return false;
  Append(host, request->url, context)->completion = completion;
  return true;
}

static const char kResponses[] = "OnServiceProxyUuidEvent";

static bool Subscribe(const KestHostServices* self, KestText name, KestDelivery delivery,
                      void* context) {
  /* The two resources that switch loot on exist here; they are delivered as every resource that
   * exists already: one "Create" right after the subscription. */
  static const char kConfig[] = "OnJsonApiEvent_/tav-platform-config/v1/namespaces/LootConfig/";
  static const char kPayload[] = "{\"uri\":\"\",\"eventType\":\"Create\",\"data\":true}";
  struct Host* host = HostOf(self);
  char* copy = Copy(name);
  if (strcmp(copy, kResponses) == 0) {
    host->responses = delivery;
    host->responsesContext = context;
  }
  if (strncmp(copy, kConfig, sizeof(kConfig) - 1) == 0) {
    const char* value = copy + sizeof(kConfig) - 1;
    if (strcmp(value, "Enabled") == 0 || strcmp(value, "PxhEnabled") == 0) {
      struct Work* work = Append(host, name, context);
      work->delivery = delivery;
      work->payload = Copy(Text(kPayload));
    }
  }
  free(copy);
  return true;
}

static void Unsubscribe(const KestHostServices* self, KestText name) {
  struct Host* host = HostOf(self);
  struct Work** place = &host->first;
  while (*place != NULL) {
    struct Work* work = *place;
    if (work->delivery != NULL && strlen(work->name) == name.size &&
        memcmp(work->name, name.data, name.size) == 0) {
      *place = work->next;
      Release(work);
    } else {
      place = &work->next;
    }
  }
  host->end = place;
}

static bool Publish(const KestHostServices* self, KestText path, int32_t eventType,
                    KestBytes json) {
  static const char* const kTypes[] = {"Create", "Update", "Delete"};
  (void)self;
  printf("  published: %s %.*s %.*s\n", kTypes[eventType], (int)path.size, path.data,
         (int)json.size, json.size > 0 ? (const char*)json.data : "");
  return true;
}

static int32_t PostTask(const KestHostServices* self, KestText name, KestTask run, void* context) {
  /* A host whose plugin uses threads of its own would take a lock here. */
  struct Host* host = HostOf(self);
  if (host->stopping) return KEST_TASK_REFUSED;
  Append(host, name, context)->task = run;
  return KEST_TASK_QUEUED;
}

static void WaitBegin(const KestHostServices* self, KestText label) {
  (void)self, (void)label;
}
static void WaitEnd(const KestHostServices* self) {
  (void)self;
}
static void YieldTask(const KestHostServices* self) {
  RunNext(HostOf(self));
}

static void WriteLog(const KestHostServices* self, int32_t level, KestText line) {
  (void)level;
  ++HostOf(self)->linesLogged;
  fwrite(line.data, 1, line.size, stderr);
}

static void SendTelemetry(const KestHostServices* self, KestText name, KestBytes json) {
  (void)self, (void)name, (void)json;
}

static void Identify(const KestHostServices* self, KestText fullName, KestText userAgent) {
  (void)self;
  printf("  identified: %.*s, %.*s\n", (int)fullName.size, fullName.data, (int)userAgent.size,
         userAgent.data);
}

static void InitHost(struct Host* host) {
  /* clang-format off */
  const KestHostServices services = {
      sizeof(KestHostServices), SendRequest, Subscribe, Unsubscribe, Publish, PostTask,
      WaitBegin, WaitEnd, YieldTask, WriteLog, SendTelemetry, Identify,
      NULL, NULL, NULL, NULL}; /* no clock, ids and causes of its own: the plugin uses the system's */
  /* clang-format on */
  host->services = services;
  host->first = NULL;
  host->end = &host->first;
  host->stopping = 0;
  host->responses = NULL;
  host->responsesContext = NULL;
  host->linesLogged = 0;
}

/* ---- The walk ---------------------------------------------------------------------------------
 */

static int failures = 0;

static void Expect(int holds, const char* what) {
  printf("  %s: %s\n", holds ? "as expected" : "NOT as expected", what);
  if (!holds) ++failures;
}

static void ExpectResponse(const KestHandshakeBlock* block, const char* url, int32_t status,
                           const char* text) {
  KestRequest request = {0};
  request.method = Text("GET");
  request.url = Text(url);
  const KestResponse* response = block->api->request(block->context, &request);
  if (response == NULL) abort(); /* out of memory */
  const char* data = status == 200 ? (const char*)response->body.data : response->message.data;
  const size_t size = status == 200 ? response->body.size : response->message.size;
  Expect(response->status == status && size == strlen(text) && memcmp(data, text, size) == 0, url);
  block->api->release(block->context, response);
}

/* On a thread of its own: a response that cannot be read, which the plugin logs. */
static void DeliverNonsense(void* context) {
  struct Host* host = context;
  static const char kNonsense[] = "[";
  KestBytes body = {(const uint8_t*)kNonsense, sizeof(kNonsense) - 1};
  host->responses(host->responsesContext, Text(kResponses), Text("application/json"), body);
}

static void Walk(const char* path, int stops) {
  void* library = OpenLibrary(path);
  if (library == NULL) exit(EXIT_FAILURE);
  KestLoadFunction load;
  *(void**)&load = FindEntry(library, "load_tav_loot");
  Expect(load != NULL, "the library has its entry");
  if (load == NULL) exit(EXIT_FAILURE);

  KestHandshakeBlock block = {18, 3, 0, NULL, NULL, NULL, NULL}; /* this host speaks 18.3.0 */
  load(&block);
  Expect(block.major == 18 && block.minor == 0 && block.patch == 0, "the plugin speaks 18.0.0");
  Expect(strcmp(block.fullName, "vwm-be-tav-loot") == 0, "the plugin's name");
  Expect(block.api->size >= sizeof(KestApiDescriptor), "the descriptor is complete");

  struct Host host;
  InitHost(&host);
  Expect(block.callbacks->start(block.context, &host.services), "start");
  Expect(!block.callbacks->start(block.context, &host.services), "a second start is refused");
  RunAll(&host);

  ExpectResponse(&block, "/tav-loot/v1/enabled", 200, "true");
  ExpectResponse(&block, "/tav-loot/v1/no-such-route", 404, "Not found");
  RunAll(&host);

  Expect(host.responses != NULL, "responses of the platform service are subscribed to");
  if (host.responses == NULL) exit(EXIT_FAILURE);
  const int logged = host.linesLogged;
  struct Thread* thread = StartThread(DeliverNonsense, &host);
  AwaitWork(thread);
  Expect(host.linesLogged > logged, "another thread logged inside the plugin");

  KestStatistics statistics;
  block.callbacks->statistics(block.context, &statistics);
  Expect(statistics.requestsHandled[0] == 2 && statistics.requestsFailed[0] == 1,
         "two requests were counted, one of them failed");

  if (stops) block.callbacks->stop(block.context);
  host.stopping = 1;
  for (struct Work* work; (work = TakeFirst(&host)) != NULL;) Release(work);
  memset(&host.services, 0, sizeof(host.services)); /* a library that goes calls its host no more */
  CloseLibrary(library);
  Expect(!IsLoaded(path), "the library is gone from the process");
  Expect(EndThread(thread), "the thread that was inside it ends afterwards");
}

int main(int argc, char** argv) {
  if (argc != 2) {
    fprintf(stderr, "usage: minimal_host PLUGIN\n");
    return EXIT_FAILURE;
  }
  for (int run = 1; run <= 3; ++run) {
    printf("Run %d\n", run);
    Walk(argv[1], run != 2);
  }
  return failures == 0 ? EXIT_SUCCESS : EXIT_FAILURE;
}
