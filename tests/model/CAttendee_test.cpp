#include "phonepim/model/CAttendee.h"

#include <gtest/gtest.h>

namespace phonepim {
namespace {

TEST(CAttendee, equality_is_text_role_and_status) {
  const CAttendee ann(u"ann@example.com", ATTENDEE_ROLE_ATTENDEE, ATTENDEE_STATUS_ACCEPTED, 1);
  CAttendee renumbered(u"ann@example.com", ATTENDEE_ROLE_ATTENDEE, ATTENDEE_STATUS_ACCEPTED, 9);
  renumbered.setParam(0x10000000u);
  EXPECT_TRUE(ann.isEqual(&renumbered));
  EXPECT_TRUE(renumbered.isEqual(&ann));

  const CAttendee other(u"Ann@example.com", ATTENDEE_ROLE_ATTENDEE, ATTENDEE_STATUS_ACCEPTED, 1);
  const CAttendee noRole(u"ann@example.com", ATTENDEE_ROLE_NONE, ATTENDEE_STATUS_ACCEPTED, 1);
  const CAttendee declined(u"ann@example.com", 1, ATTENDEE_STATUS_DECLIENED, 1);
  for (const CAttendee* differing : {&other, &noRole, &declined}) {
    EXPECT_FALSE(ann.isEqual(differing));
    EXPECT_FALSE(differing->isEqual(&ann));
  }
  EXPECT_FALSE(ann.isEqual(nullptr));

  // A plain item of the same text is no attendee; its own rule (text, ID,
  // mask) decides the other way.
  const CAttendee bare(u"ann", 0, 0, -1);
  const CItem item("ann", 0, -1);
  EXPECT_FALSE(bare.isEqual(&item));
  EXPECT_TRUE(item.isEqual(&bare));
}

}  // namespace
}  // namespace phonepim
