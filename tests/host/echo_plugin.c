/* A plugin that returns what it was asked, for tests of the host. It is loaded like the real one.
 */
#include <stdio.h>
#include <stdlib.h>
#include <string.h>

#include "plugin/host_interface.h"

static const KestHostServices* services;
static int stopping;  /* set by stop */
static int inside;    /* requests that have not ended */
static int released;  /* set by ".../release" */
static unsigned runs; /* requests since the library was loaded */
static KestApiDescriptor api;

static KestText Text(const char* text) {
  KestText view = {text, strlen(text)};
  return view;
}

static int Is(KestText text, const char* other) {
  return text.size == strlen(other) && memcmp(text.data, other, text.size) == 0;
}

struct Reply {
  KestResponse response; /* first: given back by its address */
  char body[512];
};

static void Fail(struct Reply* reply, int status, const char* message) {
  reply->response.status = status;
  reply->response.message = Text(message);
}

static void Describe(const KestRequest* request, struct Reply* reply) {
  const int size = snprintf(
      reply->body, sizeof(reply->body), "{\"%.*s\":\"%.*s|%.*s|%.*s|%zu|%zu\"}",
      (int)request->method.size, request->method.data, (int)request->url.size, request->url.data,
      (int)request->contentType.size, request->contentType.data, (int)request->accept.size,
      request->accept.data, request->body.size, request->headerCount);
  reply->response.contentType = Text("application/json");
  reply->response.body.data = (const uint8_t*)reply->body;
  reply->response.body.size = (size_t)size;
}

static void WaitForRelease(struct Reply* reply) {
  services->waitBegin(services, Text("Wait: release"));
  while (!released && !stopping) services->yield(services);
  services->waitEnd(services);
  if (!released) Fail(reply, 500, "Finalizing");
}

static const KestResponse* KEST_ABI OnRequest(void* context, const KestRequest* request) {
  (void)context;
  if (Is(request->url, "/tav-loot/v1/null")) return NULL;
  struct Reply* reply = calloc(1, sizeof(*reply));
  if (reply == NULL) return NULL;
  reply->response.status = 200;
  ++inside;
  ++runs;
  if (Is(request->url, "/tav-loot/v1/none")) {
    reply->response.status = 204;
  } else if (Is(request->url, "/tav-loot/v1/fail")) {
    Fail(reply, 500, "no \"\xff\"");
  } else if (Is(request->url, "/tav-loot/v1/odd")) {
    reply->response.status = 7;
  } else if (Is(request->url, "/tav-loot/v1/publish")) {
    const bool done =
        services->publish(services, Text("/tav-loot/v1/x"), KEST_EVENT_UPDATE, request->body);
    if (!done) Fail(reply, 400, "refused");
  } else if (Is(request->url, "/tav-loot/v1/wait")) {
    WaitForRelease(reply);
  } else if (Is(request->url, "/tav-loot/v1/release")) {
    released = 1;
  } else if (Is(request->url, "/tav-loot/v1/explain-nothing")) {
    api.size = offsetof(KestApiDescriptor, explain); /* as of an older plugin */
  } else if (Is(request->url, "/tav-loot/v1/bytes") && request->body.size <= sizeof(reply->body)) {
    memcpy(reply->body, request->body.data, request->body.size);
    reply->response.contentType = Text("application/x-msgpack");
    reply->response.body.data = (const uint8_t*)reply->body;
    reply->response.body.size = request->body.size;
  } else if (Is(request->url, "/tav-loot/v1/runs")) {
    reply->response.body.size = (size_t)sprintf(reply->body, "%u", runs);
    reply->response.body.data = (const uint8_t*)reply->body;
  } else {
    Describe(request, reply);
  }
  --inside;
  return &reply->response;
}

/* Knows Help, in its default form and as a text. */
static const KestResponse* KEST_ABI OnInvoke(void* context, KestText name,
                                             const KestValue* arguments, size_t count) {
  (void)context;
  if (!Is(name, "$builtin.Help")) return NULL;
  struct Reply* reply = calloc(1, sizeof(*reply));
  if (reply == NULL) return NULL;
  const KestText format = {count == 0 ? "Full" : (const char*)arguments->bytes.data,
                           count == 0 ? strlen("Full") : arguments->bytes.size};
  reply->response.status = 200;
  if (Is(format, "Full")) {
    strcpy(reply->body, "{\"types\":[{\"name\":\"Echo\"}]}");
  } else if (Is(format, "Epytext")) {
    strcpy(reply->body, "\"Echo\\r\\n\"");
  } else {
    Fail(reply, 400, "no such format");
  }
  reply->response.contentType = Text("application/json");
  reply->response.body.data = (const uint8_t*)reply->body;
  reply->response.body.size = strlen(reply->body);
  return &reply->response;
}

/* The question itself. */
static const KestResponse* KEST_ABI OnExplain(void* context, KestText question) {
  const KestRequest request = {.method = Text("explain"), .url = question};
  return OnRequest(context, &request);
}

static void KEST_ABI OnRelease(void* context, const KestResponse* response) {
  (void)context;
  free((void*)response);
}

static bool KEST_ABI OnStart(void* context, const KestHostServices* given) {
  (void)context;
  services = given;
  services->identify(services, Text("echo"), Text("Echo/1"));
#if defined(REFUSES_TO_START)
  return false;
#else
  return true;
#endif
}

static void KEST_ABI OnStop(void* context) {
  (void)context;
  stopping = 1;
  while (inside > 0) services->yield(services);
}

static void KEST_ABI OnStatistics(void* context, KestStatistics* statistics) {
  (void)context;
  statistics->requestsHandled[0] = runs;
}

/* A library that goes while its plugin runs takes the code from under it. */
__attribute__((destructor)) static void OnUnload(void) {
  if (services != NULL && !stopping) abort();
}

static const KestCallbackTable callbacks = {OnStart, OnStop, OnStatistics};
static KestApiDescriptor api = {sizeof(KestApiDescriptor),
                                NULL,
                                0,
                                NULL,
                                0,
                                OnRequest,
                                OnInvoke,
                                OnRelease,
                                sizeof(KestEndpoint),
                                sizeof(KestArgument),
                                NULL,
                                OnExplain};

KEST_EXPORT void KEST_ABI load_tav_loot(KestHandshakeBlock* block) {
  block->callbacks = &callbacks;
  block->context = &runs;
  block->fullName = "echo";
  block->api = &api;
}
