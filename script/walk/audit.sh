# What the auditor saw of all that.
# Sourced by script/demo at the end of the walk.

title "Each change had its event, and each event its change"
settle
request GET /_host/audit
expect "the auditor compared after each step and found nothing" 200 '.runs > 40 and .found == 0'
