// What an ensemble's data service sends round and round on a day: its service information, the schedules of
// this day and the next for each station, and the logos.
#pragma once

#include <string>
#include <vector>

#include "examples/generator/file_set.h"
#include "examples/generator/recording.h"
#include "examples/generator/stations.h"

namespace generator {

struct carousel_object {
    mot_object header;
    std::string path;  // relative to the recording
};

// One round in the order of transmission, for `date` ("YYYYMMDD"). The service information stands in the
// middle: who tunes in before the round has lost the logos of the stations before it until the next round.
// The objects' files join `files`.
std::vector<carousel_object> home_round(const std::string& date, file_set& files);
std::vector<carousel_object> other_round(const std::string& date, file_set& files);

}  // namespace generator
