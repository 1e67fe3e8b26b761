// An event in words, made when something shows it.
#pragma once

#include <chrono>
#include <string>

#include "reader/events/EventRecord.h"

namespace sentiq {

/// One line, clean. Events that the table does not know are told with provider, id and fields.
/// @param offset of the local time in which times within the event are shown.
std::string eventWords(const EventRecord& event, std::chrono::minutes offset);

/// The words as they stand within a sentence: "the machine …".
std::string inSentence(std::string words);

}  // namespace sentiq
