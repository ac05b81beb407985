// Makes a programme guide of SPI objects and images.
//
// A programme belongs to the services that its location's bearers name, else to those of the schedule's
// scope, else to the one of the object's default content ID (TS 102 371). Objects that come again under the
// same content name replace the one before, as they do in a carousel. Of several programmes of a service that
// begin at the same time the one of the latest object stays.
//
// Any bytes are an object. Work and memory are linear in the bytes; an object's tree is gone when add()
// returns.
#pragma once

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "tools/guide/programme_guide.h"
#include "tools/spi/tree.h"

namespace dabspi::guide {

class guide_reader {
 public:
    // `name`: the content name; an empty one replaces nothing. `ensemble`: that it was received on, if known.
    void add_object(std::shared_ptr<const bytes> body, const std::string& name,
                    std::optional<std::uint16_t> ensemble);
    void add_image(std::shared_ptr<const bytes> body, const std::string& name);

    // Once, at the end.
    programme_guide finish();

 private:
    struct read_programme {
        service_id service;
        std::optional<std::uint16_t> eid;
        programme what;
    };
    struct read_service {
        std::vector<std::pair<service_id, std::optional<ensemble_id>>> bearers;
        described what;
    };
    struct read_object {
        bool replaced = false;
        std::vector<read_programme> programmes;
        std::vector<read_service> services;
        std::map<ensemble_id, texts> ensembles;
    };
    struct bearer_id {
        service_id service;
        std::optional<ensemble_id> ensemble;
    };

    void schedule(const spi_object::node& from, read_object& into);
    void add_programme(const spi_object::node& from, const std::vector<bearer_id>& scope, read_object& into);
    void ensemble(const spi_object::node& from, read_object& into);
    void service_of(const spi_object::node& from, std::optional<ensemble_id> on, read_object& into);
    described description(const spi_object::node& from);
    void media(const spi_object::node& from, described& into);
    std::string text_of(const spi_object::node& from);
    std::string attribute_text(const spi_object::node& from, std::uint8_t tag);
    text text_in(const spi_object::node& from);
    std::optional<bearer_id> id_of(const spi_object::node& from, std::uint8_t tag) const;

    service_id known(service_id id, std::optional<std::uint16_t> eid) const;
    void gather_services(std::map<service_id, service>& all);
    void gather_programmes(std::map<service_id, service>& all);
    void find_pictures(std::map<service_id, service>& all);

    programme_guide result_;
    std::vector<read_object> objects_;
    std::map<std::string, std::size_t> by_name_;
    std::map<std::string, std::shared_ptr<const bytes>> images_;
    std::string language_;                 // the object's default
    std::optional<bearer_id> default_id_;  // the object's
    std::optional<std::uint16_t> received_on_;
    // For identifiers that were coded without their ECC.
    std::map<std::uint16_t, std::uint8_t> ecc_of_ensembles_;
    std::map<std::pair<std::uint32_t, std::uint8_t>, std::uint8_t> ecc_of_services_;
};

}  // namespace dabspi::guide
