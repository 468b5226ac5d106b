/* Pins every structure of the C interface by size and offset, for addresses of both widths: a host
 * and a plugin that were compiled apart agree on them. The member of a structure that is not listed
 * is its first. Compiling this file is the check. */
#include "plugin/host_interface.h"

/* The place of a member by the width of an address. */
#define BY_WIDTH(on32, on64) (sizeof(void*) == 4 ? (on32) : (on64))
#define SIZE(type, on32, on64) \
  _Static_assert(sizeof(struct type) == BY_WIDTH(on32, on64), "size of " #type)
#define PLACE(type, member, on32, on64) \
  _Static_assert(offsetof(struct type, member) == BY_WIDTH(on32, on64), #type "." #member)

SIZE(KestText, 8, 16);
PLACE(KestText, size, 4, 8);

SIZE(KestBytes, 8, 16);
PLACE(KestBytes, size, 4, 8);

SIZE(KestHeader, 16, 32);
PLACE(KestHeader, value, 8, 16);

SIZE(KestRequest, 48, 96);
PLACE(KestRequest, url, 8, 16);
PLACE(KestRequest, headers, 16, 32);
PLACE(KestRequest, headerCount, 20, 40);
PLACE(KestRequest, contentType, 24, 48);
PLACE(KestRequest, body, 32, 64);
PLACE(KestRequest, accept, 40, 80);

SIZE(KestResponse, 28, 56);
PLACE(KestResponse, message, 4, 8);
PLACE(KestResponse, contentType, 12, 24);
PLACE(KestResponse, body, 20, 40);

SIZE(KestHostServices, 64, 128);
PLACE(KestHostServices, request, 4, 8);
PLACE(KestHostServices, subscribe, 8, 16);
PLACE(KestHostServices, unsubscribe, 12, 24);
PLACE(KestHostServices, publish, 16, 32);
PLACE(KestHostServices, postTask, 20, 40);
PLACE(KestHostServices, waitBegin, 24, 48);
PLACE(KestHostServices, waitEnd, 28, 56);
PLACE(KestHostServices, yield, 32, 64);
PLACE(KestHostServices, log, 36, 72);
PLACE(KestHostServices, telemetry, 40, 80);
PLACE(KestHostServices, identify, 44, 88);
PLACE(KestHostServices, now, 48, 96);
PLACE(KestHostServices, createUuid, 52, 104);
PLACE(KestHostServices, cause, 56, 112);
PLACE(KestHostServices, setCause, 60, 120);

SIZE(KestTypeName, 16, 32);
PLACE(KestTypeName, element, 8, 16);

SIZE(KestArgument, 40, 72);
PLACE(KestArgument, description, 8, 16);
PLACE(KestArgument, type, 16, 32);
PLACE(KestArgument, location, 32, 64);
PLACE(KestArgument, optional, 36, 68);

SIZE(KestEndpoint, 52, 104);
PLACE(KestEndpoint, pathTemplate, 4, 8);
PLACE(KestEndpoint, functionName, 12, 24);
PLACE(KestEndpoint, description, 20, 40);
PLACE(KestEndpoint, arguments, 28, 56);
PLACE(KestEndpoint, argumentCount, 32, 64);
PLACE(KestEndpoint, result, 36, 72);

SIZE(KestValue, 24, 48);
PLACE(KestValue, contentType, 8, 16);
PLACE(KestValue, bytes, 16, 32);

SIZE(KestApiDescriptor, 48, 96);
PLACE(KestApiDescriptor, endpoints, 4, 8);
PLACE(KestApiDescriptor, endpointCount, 8, 16);
PLACE(KestApiDescriptor, eventNames, 12, 24);
PLACE(KestApiDescriptor, eventNameCount, 16, 32);
PLACE(KestApiDescriptor, request, 20, 40);
PLACE(KestApiDescriptor, invoke, 24, 48);
PLACE(KestApiDescriptor, release, 28, 56);
PLACE(KestApiDescriptor, endpointSize, 32, 64);
PLACE(KestApiDescriptor, argumentSize, 36, 72);
PLACE(KestApiDescriptor, setLogging, 40, 80);
PLACE(KestApiDescriptor, explain, 44, 88);

SIZE(KestStatistics, 56, 56);
PLACE(KestStatistics, requestsFailed, 8, 8);
PLACE(KestStatistics, eventsReceived, 16, 16);
PLACE(KestStatistics, eventsPublished, 24, 24);
PLACE(KestStatistics, warningsLogged, 32, 32);
PLACE(KestStatistics, errorsLogged, 40, 40);
PLACE(KestStatistics, zero, 48, 48);

SIZE(KestCallbackTable, 12, 24);
PLACE(KestCallbackTable, stop, 4, 8);
PLACE(KestCallbackTable, statistics, 8, 16);

SIZE(KestHandshakeBlock, 28, 48);
PLACE(KestHandshakeBlock, minor, 4, 4);
PLACE(KestHandshakeBlock, patch, 8, 8);
PLACE(KestHandshakeBlock, callbacks, 12, 16);
PLACE(KestHandshakeBlock, context, 16, 24);
PLACE(KestHandshakeBlock, fullName, 20, 32);
PLACE(KestHandshakeBlock, api, 24, 40);
