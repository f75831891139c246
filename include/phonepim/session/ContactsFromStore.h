// The way back out: one phone's contacts rebuilt from the store's records,
// ready for the vCard writer.
#pragma once

#include <memory>
#include <vector>

#include "phonepim/model/CContact.h"

namespace phonepim {

class SyncStore;

/// The contacts and groups the store holds for the phone `imei`, as its
/// table (the store's copy) lists them, in the order of their vCard IDs.
/// Each is made with its vCard ID and no table, and filled from its store
/// record and sub-records: the store's labels are mapped back onto the
/// simplest type mask that gives them ("home" is HOME, not HOME;VOICE), and
/// a label of the store's "other" type that no mask gives becomes the
/// element's custom label. Empty when the store has no table of the phone.
/// Throws StoreError when the store cannot be read.
std::vector<std::unique_ptr<CContact>> ContactsFromStore(const SyncStore& store,
                                                         const String& imei);

}  // namespace phonepim
