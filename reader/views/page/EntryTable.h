// All entries of a session but the records, newest first, each with all that the logs hold of it.
#pragma once

#include "reader/views/page/PageSession.h"
#include "reader/views/page/PageTemplate.h"

namespace sentiq {

/// The places of Entries.html.
/// @param page has to outlive the writing.
void addEntries(const PageSession& page, Places& places);

}  // namespace sentiq
