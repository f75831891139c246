# Script mode: one scenario of `phonepim sync` and `phonepim store` against a
# fresh store, each step's exit status and output compared with a file of
# data/sync-steps/ (the store's folder shows as STORE).
#   TOOL, DATA (the data folder, also the working directory), WORK (scratch)
file(REMOVE_RECURSE "${WORK}")
file(MAKE_DIRECTORY "${WORK}")
set(store "${WORK}/store.sqlite")

function(step name exit)
  execute_process(COMMAND "${TOOL}" ${ARGN} WORKING_DIRECTORY "${DATA}"
                  RESULT_VARIABLE status OUTPUT_VARIABLE out ERROR_VARIABLE err)
  string(REPLACE "${WORK}" "STORE" out "${out}")
  string(REPLACE "${WORK}" "STORE" err "${err}")
  # Store IDs are new UUIDs on every run.
  set(uuid "[0-9A-F]+-[0-9A-F]+-[0-9A-F]+-[0-9A-F]+-[0-9A-F]+")
  string(REGEX REPLACE "${uuid}" "UUID" out "${out}")
  if(NOT status STREQUAL exit)
    message(FATAL_ERROR "${name}: exit status ${status}, expected ${exit}\n${out}\n${err}")
  endif()
  file(READ "${DATA}/sync-steps/${name}" expected)
  if(NOT "${out}${err}" STREQUAL expected)
    file(WRITE "${WORK}/${name}" "${out}${err}")
    message(FATAL_ERROR "${name} differs from data/sync-steps/${name}:\n${out}${err}")
  endif()
endfunction()

step(first-sync 0 sync sync-before.vcf --store ${store} --imei 35)
step(second-sync 0 sync sync-before.vcf --store ${store} --imei 35)
step(dry-run 0 sync sync-after.vcf --store ${store} --imei 35 --dry-run -q)
step(edited-and-deleted 0 sync sync-after.vcf --store ${store} --imei 35)
# A card the strict reader refuses is no deletion: its records stay as they were.
step(unreadable 1 sync sync-unreadable.vcf --store ${store} --imei 35 --strict)
# A table file that disagrees with the store (here, gone) is never read but
# written again from the store's table, which the next sync then agrees with.
file(REMOVE_RECURSE "${WORK}/store.sqlite-tables")
step(table-rewritten 0 sync sync-after.vcf --store ${store} --imei 35 -q)
step(table-agrees 0 sync sync-after.vcf --store ${store} --imei 35 -q)
# A calendar export alone leaves the contacts as they are.
step(calendar 0 sync sync-calendar.vcs --store ${store} --imei 35)
step(show 0 store show --store ${store})
step(export 0 store export --store ${store} --imei 35 --to vcf)
# The calendar back as the phone's text: dates, kinds, alarms and rules kept.
step(export-vcs 0 store export --store ${store} --imei 35 --to vcs)
# The alarm moved: its sub-record is replaced. The to-do went: its record goes.
step(calendar-edited 0 sync sync-calendar-edited.vcs --store ${store} --imei 35)
step(show-after 0 store show --store ${store})
# A whole address book there and back: every kind of sub-record a contact has.
step(examples 0 sync ../../../examples/address-book.vcf --store ${WORK}/examples.sqlite --imei 35 -q)
step(examples-export 0 store export --store ${WORK}/examples.sqlite --imei 35 --to vcf)
# And the examples' calendar: rules of every kind, one with an end date.
step(examples-calendar 0 sync ../../../examples/calendar.vcs --store ${WORK}/examples.sqlite --imei 35 -q)
step(examples-calendar-export 0 store export --store ${WORK}/examples.sqlite --imei 35 --to vcs)
step(json 1 sync ../../../examples/bad-cards.vcf --store ${WORK}/other.sqlite --json -q)
step(not-a-store 2 store show --store contacts.vcf)
step(no-store 2 store show --store ${WORK}/none.sqlite)
step(two-exports 2 sync sync-before.vcf sync-after.vcf --store ${store})
