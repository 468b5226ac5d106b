# A frozen clock: a throttle that passes, a call that takes as long as one likes.
# Sourced by script/demo at the end of the walk.

title "Three seconds pass at once"
start_over
request PUT /_host/clock '{"mode": "frozen", "now": "2030-01-01T12:00:00Z"}'
expect "the clock is frozen" 200 '.mode == "frozen" and .now == "2030-01-01T12:00:00.000Z"'
request POST /tav-loot/v1/refresh
request POST /tav-loot/v1/refresh
expect_body "a second refresh within three seconds is too frequent" '"TOO_FREQUENT"'
request GET /_host/explain/retrieval
expect "and says until when" 200 '(.refresh.isSent | not) and .throttledUntil == .now + 3'
request POST /_host/clock/advance '{"milliseconds": 3000}'
expect "the clock is advanced" 200 '.now == "2030-01-01T12:00:03.000Z"'
request POST /tav-loot/v1/refresh
expect_body "the throttle has passed" '"REQUESTED_ASYNC"'
request POST /_host/clock/advance '{"milliseconds": 1000}'

title "A call that takes ten minutes"
events
request PUT /_host/service/craftPlayerLootWithRefId '{"latency": 600000}'
begin_craft
wait_until /_host/clock '.dueIn == 600000'
request GET /_host/clock
expect "the craft waits for the clock" 200 '.dueIn == 600000'
request POST /_host/clock/advance '{"milliseconds": 599999}'
expect "a millisecond before its time it still does" 200 '.dueIn == 1'
if [ -s "$work/begun_status" ]; then failed "the craft ended too early"; else passed "nothing has come"; fi
request POST /_host/clock/advance '{"milliseconds": 1}'
end_craft
expect "and then it ends" 200 '.removed | map([.playerLoot.lootName, .deltaCount]) == [["CHEST_lantern", 1]]'
request GET '/_host/timeline?kind=service-response&path=loot.craft'
expect "after ten minutes, says the timeline" 200 '.rows[-1].duration == 600000'
request PUT /_host/clock '{"mode": "real"}'
expect "the clock runs again" 200 '.mode == "real"'
