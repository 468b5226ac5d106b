# What notifies the player of new loot: chest notifications, marks of new items, grants after a game.
# Sourced by script/demo after the main job.

title "A new player's chest is announced and acknowledged"
request GET /tav-loot/v1/player-loot-notifications
expect "both special chests wait to be seen" 200 \
  'sort_by(.id) == [{id: "CHEST_day_one", count: 1, acknowledged: false}, {id: "CHEST_new_player", count: 1, acknowledged: false}]'
request POST /tav-loot/v1/player-loot-notifications/CHEST_new_player/acknowledge
expect_body "one is seen" '"ACKNOWLEDGED"'
request GET /tav-loot/v1/player-loot-notifications
expect "only that one" 200 \
  'sort_by(.id) == [{id: "CHEST_day_one", count: 1, acknowledged: false}, {id: "CHEST_new_player", count: 1, acknowledged: true}]'
events
expect_changes "one update went out" "Update v1/player-loot-notifications"
expect_event "with the whole list" v1/player-loot-notifications "$body"
request POST /tav-loot/v1/player-loot-notifications/CHEST_harbour/acknowledge
expect_body "other chests have none" '"NOT_FOUND"'
request DELETE /tav-loot/v1/player-loot/EMOTE_703/new-notification
expect_nothing "the mark of a new item comes off"
events
expect_changes "which is a change of the item" \
  "Update v1/player-loot/EMOTE_703" "Update v1/player-loot-map" "Update v2/player-loot-map"
request DELETE /tav-loot/v1/player-loot/EMOTE_703/new-notification
expect_nothing "a second time is no error"
events
expect_changes "and no change"

title "A grant that comes during a game waits for its end"
packet_grant='{"id": 0, "gameId": 4401, "playerId": 70014250, "championId": 12, "playerGrade": "", "lootName": "",
  "messageKey": "GAME_LEAVER", "msgId": "", "accountId": 0}'
first_grant='{"id": 1, "gameId": 4410, "playerId": 70014250, "championId": 11, "playerGrade": "S",
  "lootName": "CHEST_mastery", "messageKey": "", "msgId": "grant-4410", "accountId": 880231}'
second_grant='{"id": 2, "gameId": 4411, "playerId": 70014250, "championId": 14, "playerGrade": "S+",
  "lootName": "CHEST_mastery", "messageKey": "CHEST_EARNED", "msgId": "grant-4411", "accountId": 880231}'
request GET /tav-loot/v1/loot-grants
expect_body "one came with the login data packet" "[$packet_grant]"
request PUT /_host/gameflow '{"phase": "InProgress"}'
request POST /_host/messages '{"name": "mastery chest"}'
request POST /_host/messages '{"name": "another mastery chest", "as": "text"}'
events
expect_changes "two more arrive, nothing is published"
request GET /tav-loot/v1/loot-grants
expect_body "nor shown" "[$packet_grant]"
request PUT /_host/gameflow '{"phase": "EndOfGame"}'
events
expect_events "after the game one update brings both" 'length == 1'
expect_event "in the order of their arrival" v1/loot-grants "[$packet_grant, $first_grant, $second_grant]"
request GET /tav-loot/v1/loot-grants
expect_body "and the list shows them" "[$packet_grant, $first_grant, $second_grant]"

title "A dismissed grant is acknowledged to the platform"
request DELETE /tav-loot/v1/loot-grants/1
expect_nothing "it is dismissed"
events
expect_changes "which is published" "Delete v1/loot-grants"
request GET /tav-loot/v1/loot-grants
expect_body "the others keep their places" "[$packet_grant, $second_grant]"
request GET /_host/state
acknowledged='[{"accountId": 880231, "msgId": "packet-long-seen", "command": "ack"}, {"accountId": 880231, "msgId": "grant-4410", "command": "ack"}]'
expect "the platform has its response, after the one for the old message of the packet" 200 '.acknowledgements == $wanted' --argjson wanted "$acknowledged"
request DELETE /tav-loot/v1/loot-grants/1
expect_nothing "a second time is no error"
request DELETE /tav-loot/v1/loot-grants/0
expect_nothing "one of the packet needs no acknowledgement"
request GET /_host/state
expect "so nothing more was acknowledged" 200 '.acknowledgements == $wanted' --argjson wanted "$acknowledged"
events
expect_changes "one of the two was a change" "Delete v1/loot-grants"
