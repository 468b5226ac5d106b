/* The C interface between the plugin host and this plugin. Everything a host needs is here.
 *
 * A host loads the library, finds the one export `load_tav_loot`, and calls, in this order:
 *   1. load_tav_loot(&block)                  the handshake; the block's out-words are then filled
 *   2. block.callbacks->start(context, &host) once; the plugin now calls the host's service table
 *   3. requests through block.api, events through the subscriptions, in any order and number
 *   4. block.callbacks->stop(context)         once, also when start returned false; afterwards
 *                                             nothing of the plugin may be touched
 * The library may then be unloaded, and loaded again from a clean state.
 *
 * Conventions, unless an entry says otherwise:
 *   Text     KestText is UTF-8, `size` bytes, no NUL promised, `data` may be null when `size` is 0.
 *   Bytes    KestBytes likewise, without an encoding; a content type comes with it.
 *   Lending  every view passed into a call is lent for that call: copy what you keep.
 *   Self     each function takes the object it belongs to first: the host's service table, or the
 *            plugin's context (word 4 of the handshake block).
 *   Size     a table's leading `size` is its size in bytes as its owner built it. Test it before
 *            using an entry that is younger than the table you were compiled against. The elements
 *            of the descriptor's lists may be longer than yours: step with KestEndpointAt and
 *            KestArgumentAt.
 *   Failure  no function throws or lets an exception pass, on either side.
 *
 * Threads. The host runs plugin code as tasks of one cooperative module scheduler: one task runs at
 * a time, until it returns or calls `yield`. Three tags say where a function may be called:
 *   [module task]  on such a task only.
 *   [any thread]   on any thread, also while a module task runs.
 *   [loader]       on the thread that loads the library, before start or after stop.
 * A module task needs a stack of 64 KiB; no call of the plugin goes deeper for larger input.
 *
 * Deliveries. The host queues: it never calls a delivery, completion or task function of the plugin
 * from inside a call to its service table, nor start or stop. `request`, `invoke` and `explain` it
 * may call from inside `publish`, on the same task, and from inside no other entry; the response
 * shows the change that is being published, what the call changes is published after it, and the
 * bytes lent to `publish` stay as they are. `statistics` and `release` may be called from inside
 * every entry but `log`.
 *
 * Resource events, request completions and tasks run as [module task]; the events
 * "OnServiceProxyUuidEvent", "OnServiceProxyMethodEvent", "OnServiceProxyAsyncEvent" and
 * "OnSvdsEvent" (and its "OnSvdsEvent_..." forms) may come on any thread. The plugin takes a lock
 * of its own there, and holds it when it calls `log` and `postTask`. So while the host delivers one
 * of these events it holds no lock that an entry of its service table takes. After stop has
 * returned the host calls nothing any more: it drops open completions, subscriptions and tasks.
 */
#ifndef KEST_PLUGIN_HOST_INTERFACE_H_
#define KEST_PLUGIN_HOST_INTERFACE_H_

#include <stdbool.h>
#include <stddef.h>
#include <stdint.h>

#if defined(_WIN32)
#define KEST_ABI __cdecl
#define KEST_EXPORT __declspec(dllexport)
#else
#define KEST_ABI
#define KEST_EXPORT __attribute__((visibility("default")))
#endif

#ifdef __cplusplus
#define KEST_NOEXCEPT noexcept
#define KEST_STATIC_ASSERT(test, text) static_assert(test, text)
extern "C" {
#else
#define KEST_NOEXCEPT
#define KEST_STATIC_ASSERT(test, text) _Static_assert(test, text)
#endif

typedef struct KestText {
  const char* data;
  size_t size;
} KestText;

typedef struct KestBytes {
  const uint8_t* data;
  size_t size;
} KestBytes;

/* ---- Requests and responses ----------------------------------------------------------------- */

typedef struct KestHeader {
  KestText name; /* an argument name of the function; names are compared exactly */
  KestText value;
} KestHeader;

typedef struct KestRequest {
  KestText method; /* "DELETE", "GET", "HEAD", "OPTIONS", "PATCH", "POST" or "PUT" */
  KestText url;    /* raw path, then "?" and the query when there is one; percent-encoded */
  const KestHeader* headers; /* only pairs meant as arguments of the function: every other pair
                                is rejected as an unknown argument */
  size_t headerCount;
  KestText contentType; /* of `body`; empty without a body */
  KestBytes body;       /* no bytes: no body. At most 64 MiB */
  KestText accept;      /* an HTTP Accept header; empty: "application/json" */
} KestRequest;

typedef struct KestResponse {
  int32_t status;       /* HTTP status code: 200 with a body, 204 for a success without one,
                           400 the arguments could not be bound, 404 no such route or resource,
                           413 the body is above 64 MiB, 500 the function failed */
  KestText message;     /* failure message of a status of 400 or above, otherwise empty */
  KestText contentType; /* of `body`; empty without a body */
  KestBytes body;       /* the result of a success; empty for a failure */
} KestResponse;

/* ---- The host's service table ---------------------------------------------------------------- */

/* Values of `eventType`. */
enum { KEST_EVENT_CREATE = 0, KEST_EVENT_UPDATE = 1, KEST_EVENT_DELETE = 2 };

/* Results of `postTask`. */
enum {
  KEST_TASK_REFUSED = 0, /* the host is stopping: `run` is never called */
  KEST_TASK_QUEUED = 1,  /* `run(context)` is called once, unless the plugin stops before */
  KEST_TASK_MERGED = 2   /* a task of the same name is queued already and serves for this one too:
                            that one's `run` is called with its own context, this one never */
};

/* The response to a `request`. [module task], at most once for each accepted request. */
typedef void(KEST_ABI* KestCompletion)(void* context, const KestResponse* response);

/* One event. `name` is the subscribed name, `body` the event's payload as `contentType`
 * ("application/json"). Thread: see Deliveries above. */
typedef void(KEST_ABI* KestDelivery)(void* context, KestText name, KestText contentType,
                                     KestBytes body);

typedef void(KEST_ABI* KestTask)(void* context);

/* Owned by the host, constant, valid from the call of start until stop has returned. */
typedef struct KestHostServices {
  uint32_t size; /* sizeof(KestHostServices) as the host was compiled */

  /* [module task] Sends a request to another plugin's endpoint or to one of the host's own. The
   * host copies the request before it returns. The response, of any status, reaches
   * `completion(context, response)` later; `context` stays the plugin's.
   * False: not sent, `completion` is never called.
   * The host's own endpoints, all POST with a JSON body
   * {"serviceName", "methodName", "args": [..]}:
   *   "/tav-login/v1/session/invoke" returns the method's result.
   *   "/tav-login/v1/service-proxy-uuid-requests" returns a request id as a JSON string; the
   *     result comes as "OnServiceProxyUuidEvent".
   *   "/tav-login/v1/service-proxy-method-requests" (body also "requestKey" and "flag"); the result
   *     comes as "OnServiceProxyMethodEvent". */
  bool(KEST_ABI* request)(const struct KestHostServices* self, const KestRequest* request,
                          KestCompletion completion, void* context);

  /* [module task] Delivers every later event of that name to `delivery(context, ...)`. Names:
   *   "OnJsonApiEvent_" + path   a resource of another plugin changed. Payload {"uri", "eventType",
   *                              "data"}, eventType "Create", "Update" or "Delete" (no data). When
   *                              the resource exists already, one "Create" with its present value
   *                              is queued at once.
   *   "OnJsonApiEvent"           the same for every resource of every other plugin, without the
   *                              present values.
   *   "OnSvdsEvent_" + subtopic  a platform message. Payload {"clientId", "subtopic", "typeName",
   *                              "body"}.
   *   "OnServiceProxyUuidEvent", "OnServiceProxyMethodEvent", "OnServiceProxyAsyncEvent"
   *                              responses of the platform service. Payload {"uuid", "serviceName",
   *                              "methodName", "payload", "status", "error"}, all strings;
   *                              `payload` is itself JSON.
   *
   * One subscription per name: a second one replaces the first and takes over its queued
   * deliveries; the present value is queued once more, after them. False: refused (the host is
   * stopping, or does not know the name). */
  bool(KEST_ABI* subscribe)(const struct KestHostServices* self, KestText name,
                            KestDelivery delivery, void* context);

  /* [module task] Ends a subscription; queued deliveries of it are dropped. An unknown name does
   * nothing. */
  void(KEST_ABI* unsubscribe)(const struct KestHostServices* self, KestText name);

  /* [module task] Publishes a change of one of this plugin's resources to all subscribers.
   * `json` is the new value, no bytes for KEST_EVENT_DELETE. False: not published. */
  bool(KEST_ABI* publish)(const struct KestHostServices* self, KestText path, int32_t eventType,
                          KestBytes json);

  /* [any thread] Queues `run(context)` as a module task, due at once, after the tasks already
   * queued. Returns one of KEST_TASK_.... */
  int32_t(KEST_ABI* postTask)(const struct KestHostServices* self, KestText name, KestTask run,
                              void* context);

  /* [module task] Reports that this task waits, and for what ("Wait: future<...>"); `waitEnd` that
   * the wait is over. They bracket a loop of `yield` and are for display and scheduling only.
   */
  void(KEST_ABI* waitBegin)(const struct KestHostServices* self, KestText label);
  void(KEST_ABI* waitEnd)(const struct KestHostServices* self);

  /* [module task] Lets other tasks and deliveries run; returns when it is this task's turn again.
   * It returns without a due event too, so the caller tests its condition in a loop. */
  void(KEST_ABI* yield)(const struct KestHostServices* self);

  /* [any thread] Writes one finished line (its line feed included) to the host's log. What a line
   * quotes is not changed, so it may hold bytes that are no UTF-8. `level` is
   * 0 okay, 1 warning, 2 error, 3 always. The host must not call back into the plugin from here. */
  void(KEST_ABI* log)(const struct KestHostServices* self, int32_t level, KestText line);

  /* [module task] Sends a telemetry event below "/telemetry/v1/events/". `json` is its data. */
  void(KEST_ABI* telemetry)(const struct KestHostServices* self, KestText name, KestBytes json);

  /* Handed to "other plugins" as this plugin's name for requests: called once, from start, before
   * any request. `fullName` is "vwm-be-tav-loot", `userAgent` "KestClient/18.0.0 (vwm-be-tav-loot)"
   * with the host's plugin API version. [module task] */
  void(KEST_ABI* identify)(const struct KestHostServices* self, KestText fullName,
                           KestText userAgent);

  /* The entries below are younger than the table: for one that is null, or that a smaller `size`
   * excludes, the plugin uses the system's own. They must not call back into the plugin. */

  /* [any thread] Milliseconds since 1970-01-01 00:00 UTC. The plugin reads all time here from start
   * to stop; the time may pause or jump. */
  int64_t(KEST_ABI* now)(const struct KestHostServices* self);

  /* [any thread] Fills the 16 bytes at `uuid` with an id that no other request has. False: there is
   * none, which ends the process with a log line. */
  bool(KEST_ABI* createUuid)(const struct KestHostServices* self, uint8_t* uuid);

  /* [any thread] What the calling code follows from, a number of the host's; 0: nothing. Asked
   * where a response arrives, for one that arrives before the id of its request where that is sent.
   * setCause [module task]: what the running task does follows from it. */
  uint64_t(KEST_ABI* cause)(const struct KestHostServices* self);
  void(KEST_ABI* setCause)(const struct KestHostServices* self, uint64_t cause);
} KestHostServices;

/* ---- What the plugin offers ------------------------------------------------------------------ */

/* Where log lines go. The debugger is that of Windows. */
enum { KEST_LOG_STANDARD_ERROR = 1, KEST_LOG_DEBUGGER = 2, KEST_LOG_HOST = 4 };

/* Where an argument is taken from. */
enum {
  KEST_LOCATION_ANY = 0,
  KEST_LOCATION_QUERY = 1,
  KEST_LOCATION_PATH = 2,
  KEST_LOCATION_HEADER = 4,
  KEST_LOCATION_BODY = 5
};

/* The name of a type: "bool", "int8" ... "uint64", "float", "double", "string", "object", "blob",
 * "callback", the registered name of a structure or enumeration ("PlayerLoot"), or "vector" or
 * "map" with the element's name in `element`. Empty: no value. */
typedef struct KestTypeName {
  KestText name;
  KestText element;
} KestTypeName;

typedef struct KestArgument {
  KestText name;
  KestText description;
  KestTypeName type;
  int32_t location; /* KEST_LOCATION_... */
  bool optional;
} KestArgument;

typedef struct KestEndpoint {
  int32_t methodId;      /* 1 DELETE, 2 GET, 3 HEAD, 4 OPTIONS, 5 PATCH, 6 POST, 7 PUT */
  KestText pathTemplate; /* "/tav-loot/v1/player-loot/{lootId}" */
  KestText functionName; /* unique; the name to invoke it by */
  KestText description;
  const KestArgument* arguments;
  size_t argumentCount;
  KestTypeName result; /* empty: the function returns no value */
} KestEndpoint;

/* One argument of a direct invocation. */
typedef struct KestValue {
  KestText name;        /* empty: the argument at this place in the list */
  KestText contentType; /* "application/json", ...; empty: a plain string */
  KestBytes bytes;
} KestValue;

/* Owned by the plugin, constant, valid until stop. */
typedef struct KestApiDescriptor {
  uint32_t size; /* sizeof(KestApiDescriptor) as the plugin was compiled */

  const KestEndpoint* endpoints; /* in order of registration; the first match handles a request */
  size_t endpointCount;
  const KestText* eventNames; /* the event names this plugin knows, "OnCallback" first */
  size_t eventNameCount;

  /* [module task] Handles a request, possibly after yielding. Never null, except when no memory is
   * left. The caller gives the response to `release` when it has read it; views into it are valid
   * until then. */
  const KestResponse*(KEST_ABI* request)(void* context, const KestRequest* request);

  /* [module task] Calls a function by its name ("GetPlayerLoot", or "$builtin.Help"). As `request`;
   * an unknown name returns 404 with "Invalid function". */
  const KestResponse*(KEST_ABI* invoke)(void* context, KestText functionName,
                                        const KestValue* arguments, size_t argumentCount);

  /* [any thread] Frees a response. Null does nothing. */
  void(KEST_ABI* release)(void* context, const KestResponse* response);

  /* The bytes of one element of `endpoints` and of its `arguments`, as the plugin was compiled. */
  size_t endpointSize;
  size_t argumentSize;

  /* [any thread] Chooses where the plugin's log lines of at least `leastLevel` (see `log`) go from
   * now on: `outputs` is a sum of KEST_LOG_.... It holds for all of this library; a host that
   * prints what `log` hands to it leaves standard error out, so that no line is there twice. Until
   * the first call lines of level 1 and above go to all three, to the host's from `start` on. Not
   * from inside `log`. Absent in a plugin that is older: see KestCanSetLogging. */
  void(KEST_ABI* setLogging)(void* context, int32_t leastLevel, uint32_t outputs);

  /* [module task] Explains a decision of the plugin as it is now: why loot is disabled, what the
   * plugin waits for, why an item has its status. `question` is a raw path without a "/" in front,
   * with a query where it takes one: "ready", "item/CHEST_1". The response is that of `request`:
   * 200 with a JSON document, 404 for a question that the plugin does not know, 400 for one with a
   * part missing. It does not yield, changes nothing and is not counted by `statistics`. Absent in
   * a plugin that is older than this entry: see KestCanExplain. */
  const KestResponse*(KEST_ABI* explain)(void* context, KestText question);
} KestApiDescriptor;

/* Whether the plugin that gave the descriptor has `setLogging`. */
static inline bool KestCanSetLogging(const KestApiDescriptor* api) {
  return api->size >= offsetof(KestApiDescriptor, setLogging) + sizeof api->setLogging &&
         api->setLogging != NULL; /* C, too: NOLINT(modernize-use-nullptr) */
}

/* Whether the plugin that gave the descriptor has `explain`. */
static inline bool KestCanExplain(const KestApiDescriptor* api) {
  return api->size >= offsetof(KestApiDescriptor, explain) + sizeof api->explain &&
         api->explain != NULL; /* C, too: NOLINT(modernize-use-nullptr) */
}

/* The element at `index` of a list, however long its elements are. */
static inline const KestEndpoint* KestEndpointAt(const KestApiDescriptor* api, size_t index) {
  return (const KestEndpoint*)((const char*)api->endpoints + index * api->endpointSize);
}
static inline const KestArgument* KestArgumentAt(const KestApiDescriptor* api,
                                                 const KestEndpoint* endpoint, size_t index) {
  return (const KestArgument*)((const char*)endpoint->arguments + index * api->argumentSize);
}

/* Six counters since start, each as two 32-bit halves, low half first, then two zero words. */
typedef struct KestStatistics {
  uint32_t requestsHandled[2]; /* requests and invocations that reached their end */
  uint32_t requestsFailed[2];  /* of these, with a status of 400 or above */
  uint32_t eventsReceived[2];
  uint32_t eventsPublished[2];
  uint32_t warningsLogged[2];
  uint32_t errorsLogged[2];
  uint32_t zero[2];
} KestStatistics;

/* Owned by the plugin object, constant. Every entry accepts a null context: start then returns
 * false and the others do nothing. */
typedef struct KestCallbackTable {
  /* [module task] Keeps the service table and initialises: subscribes, loads the game data (yields
   * while it waits for it). False: not started (null arguments, started before, or out of
   * memory); stop then takes back what it had begun. */
  bool(KEST_ABI* start)(void* context, const KestHostServices* services);

  /* [module task] Ends every wait with a failure, drops the subscriptions, yields until no request
   * and no event is in progress, and destroys the plugin object. Requests during stop get 500
   * "Finalizing". A second stop does nothing while the library is loaded. */
  void(KEST_ABI* stop)(void* context);

  /* [any thread] Fills the host's fourteen words. */
  void(KEST_ABI* statistics)(void* context, KestStatistics* statistics);
} KestCallbackTable;

/* The handshake block: seven words, owned by the host, read at entry and written before return. */
typedef struct KestHandshakeBlock {
  uint32_t major;                     /* in: the host's plugin API version. out: 18 */
  uint32_t minor;                     /* in, then out: 0 */
  uint32_t patch;                     /* in, then out: 0 */
  const KestCallbackTable* callbacks; /* out */
  void* context;                      /* out: the plugin object; null when there was no memory */
  const char* fullName;               /* out: "vwm-be-tav-loot", NUL-terminated, the plugin's; null
                                         with a null context */
  const KestApiDescriptor* api;       /* out: null with a null context */
} KestHandshakeBlock;

/* A 32-bit host sees exactly seven words; a 64-bit one the same members at natural alignment. */
KEST_STATIC_ASSERT(offsetof(KestHandshakeBlock, callbacks) ==
                       (sizeof(void*) == 4 ? 3 * sizeof(uint32_t) : 2 * sizeof(void*)),
                   "word 3");
KEST_STATIC_ASSERT(offsetof(KestHandshakeBlock, context) ==
                       offsetof(KestHandshakeBlock, callbacks) + sizeof(void*),
                   "word 4");
KEST_STATIC_ASSERT(offsetof(KestHandshakeBlock, fullName) ==
                       offsetof(KestHandshakeBlock, callbacks) + 2 * sizeof(void*),
                   "word 5");
KEST_STATIC_ASSERT(offsetof(KestHandshakeBlock, api) ==
                       offsetof(KestHandshakeBlock, callbacks) + 3 * sizeof(void*),
                   "word 6");
KEST_STATIC_ASSERT(sizeof(void*) != 4 || sizeof(KestHandshakeBlock) == 7 * sizeof(uint32_t),
                   "seven words");
KEST_STATIC_ASSERT(sizeof(KestCallbackTable) == 3 * sizeof(void*), "three entries");
KEST_STATIC_ASSERT(sizeof(KestStatistics) == 14 * sizeof(uint32_t), "fourteen words");

/* The one export. [loader] A host of another major version, or of a lower minor.patch, ends the
 * process after a log line that names both versions. A null block does nothing. */
typedef void(KEST_ABI* KestLoadFunction)(KestHandshakeBlock* block);
KEST_EXPORT void KEST_ABI load_tav_loot(KestHandshakeBlock* block) KEST_NOEXCEPT;

#ifdef __cplusplus
}
#endif

#endif /* KEST_PLUGIN_HOST_INTERFACE_H_ */
