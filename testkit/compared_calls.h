// One call as the programme database takes it and as its model takes it, and what either sends, in one form.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "src/event/event.h"
#include "testkit/database_model.h"
#include "testkit/random_calls.h"

namespace event_db {

std::shared_ptr<spi::i_evt_base> payload_for(const call& c);

// What the database has sent, in the model's words.
std::string event_text(const spi::event& e);

// What the model sends.
std::vector<std::string> sent_by(database_model& model, const call& c);

}  // namespace event_db
