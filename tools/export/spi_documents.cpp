#include "tools/export/spi_documents.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <ctime>
#include <pugixml.hpp>
#include <set>
#include <sstream>
#include <tuple>

#include "tools/spi/decode.h"
#include "tools/spi/xml_document.h"
#include "tools/text/utf8.h"

namespace dabspi {

namespace {

using guide::programme_guide;
using guide::service;
using spi_object::node;
namespace tag = spi_object::tag;

constexpr const char* kRoot = "radiodns/spi/3.1/";
constexpr const char* kNamespace = "http://www.worlddab.org/schemas/spi/31";

std::string text_of(const pugi::xml_document& document) {
    std::ostringstream out;
    document.save(out, " ", pugi::format_indent, pugi::encoding_utf8);
    return out.str();
}

pugi::xml_node begin(pugi::xml_document& document, const char* top) {
    pugi::xml_node declaration = document.append_child(pugi::node_declaration);
    declaration.append_attribute("version") = "1.0";
    declaration.append_attribute("encoding") = "UTF-8";
    pugi::xml_node made = document.append_child(top);
    made.append_attribute("xmlns") = kNamespace;
    return made;
}

spi_object::time_value time_value_of(std::int64_t instant, std::optional<int> offset) {
    spi_object::time_value made;
    made.mjd = static_cast<std::uint32_t>(instant / 86400 + 40587);
    made.hour = static_cast<unsigned>(instant % 86400 / 3600);
    made.minute = static_cast<unsigned>(instant % 3600 / 60);
    made.second = static_cast<unsigned>(instant % 60);
    made.offset = offset;
    return made;
}

// "20260310"
std::string day_name(long day) {
    const std::time_t noon = static_cast<std::time_t>(day) * 86400 + 43200;
    std::tm parts{};
    ::gmtime_r(&noon, &parts);
    char text[64];
    std::snprintf(text, sizeof text, "%04d%02d%02d", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday);
    return text;
}

spi_object::content_id content_id_of(const guide::service_id& id, const guide::ensemble_id& on) {
    spi_object::content_id made;
    made.ecc = on.ecc;
    made.eid = on.eid;
    made.sid = id.sid;
    made.long_sid = id.sid > 0xFFFF;
    made.scids = id.scids;
    return made;
}

// "dab:ce1.c185.c221.0" -> "dab/ce1/c185/c221/0"
std::string path_of(const guide::service_id& id, const guide::ensemble_id& on) {
    std::string path = spi_object::content_id_text(content_id_of(id, on));
    std::replace(path.begin(), path.end(), ':', '/');
    std::replace(path.begin(), path.end(), '.', '/');
    return path;
}

// Of a picture's name, what can be the name of a file below a folder.
std::string file_name_of(const std::string& url) {
    std::string name =
        url.substr(std::min(url.find("://") == std::string::npos ? 0 : url.find("://") + 3, url.size()));
    for (char& c : name)
        if (static_cast<unsigned char>(c) < 0x20 || std::strchr("/\\:*?\"<>|\x7F", c) != nullptr) c = '_';
    while (!name.empty() && name.front() == '.')
        name.erase(0, 1);
    constexpr std::size_t kLongest = 200;
    if (name.size() > kLongest) name = name.substr(name.size() - kLongest);
    return name.empty() ? "picture" : name;
}

// The programmes of one source that go into one document.
struct part {
    std::size_t service = 0;
    long day = 0;
    std::map<std::uint32_t, std::int64_t> starts;  // by the place in the source
};

class schedules {
 public:
    explicit schedules(const programme_guide& of) : guide_(of) {}

    void write(std::map<std::string, std::string>& files) {
        const auto parts = parts_by_source();
        for (const auto& [source, all] : parts)
            read(source, all);
        for (auto& [key, programmes] : programmes_)
            write(guide_.services[key.first], key.second, programmes, files);
    }

 private:
    using key_t = std::pair<std::size_t, long>;  // service, day

    std::map<std::size_t, std::vector<part>> parts_by_source() const {
        std::map<std::tuple<std::size_t, std::size_t, long>, std::map<std::uint32_t, std::int64_t>> found;
        for (std::size_t i = 0; i < guide_.services.size(); ++i)
            for (const guide::programme& each : guide_.services[i].programmes)
                found[{each.source, i, each.local_day()}].emplace(each.place, each.start);
        std::map<std::size_t, std::vector<part>> parts;
        for (auto& [key, starts] : found)
            parts[std::get<0>(key)].push_back({std::get<1>(key), std::get<2>(key), std::move(starts)});
        return parts;
    }

    void read(std::size_t source, const std::vector<part>& parts) {
        const spi_object::object tree = spi_object::decode(*guide_.sources[source]);
        std::map<std::uint32_t, const node*> programmes;
        const node* top = nullptr;
        for (const node& each : tree.tops) {
            if (each.tag != tag::epg) continue;
            top = &each;
            for (const node& schedule : each.children)
                if (schedule.kind == spi_object::node_kind::element && schedule.tag == tag::schedule)
                    for (const node& one : schedule.children)
                        if (one.kind == spi_object::node_kind::element && one.tag == tag::programme)
                            programmes.emplace(one.offset, &one);
        }
        if (top == nullptr) return;
        for (const part& each : parts)
            take(*top, programmes, each);
    }

    void take(const node& top, const std::map<std::uint32_t, const node*>& programmes, const part& wanted) {
        node schedule;
        schedule.tag = tag::schedule;
        schedule.element = spi_object::find_element(tag::schedule);
        std::vector<std::int64_t> starts;
        for (const auto& [place, start] : wanted.starts) {
            schedule.children.push_back(*programmes.at(place));
            starts.push_back(start);
        }
        spi_object::object chosen;
        chosen.kind = spi_object::object_kind::programme_information;
        node epg;
        epg.tag = top.tag;
        epg.element = top.element;
        for (const std::uint8_t kept : {tag::default_language, tag::default_content_id})
            if (const node* const each = top.child(kept)) epg.children.push_back(*each);
        epg.children.push_back(std::move(schedule));
        chosen.tops.push_back(std::move(epg));

        pugi::xml_document read;
        read.load_string(spi_object::xml_of(chosen).text.c_str(), pugi::parse_full);
        const pugi::xml_node root = read.child("epg");
        const std::string language = root.attribute("xml:lang").value();
        std::size_t next = 0;
        auto& into = programmes_[{wanted.service, wanted.day}];
        for (pugi::xml_node each : root.child("schedule").children("programme")) {
            if (!language.empty() && !each.attribute("xml:lang"))
                each.append_attribute("xml:lang") = language.c_str();
            into[starts[next++]].append_copy(each);
        }
    }

    void write(const service& of, long day, const std::map<std::int64_t, pugi::xml_document>& programmes,
               std::map<std::string, std::string>& files) const {
        std::set<guide::ensemble_id> ensembles = of.ensembles;
        if (ensembles.empty()) ensembles.insert({of.id.ecc, 0});
        std::int64_t stop = programmes.begin()->first;
        std::optional<int> offset;
        for (const guide::programme& each : of.programmes) {
            if (each.local_day() != day) continue;
            stop = std::max(stop, each.stop());
            if (!offset) offset = each.offset;
        }
        for (const guide::ensemble_id& on : ensembles) {
            pugi::xml_document document;
            pugi::xml_node schedule = begin(document, "epg").append_child("schedule");
            pugi::xml_node scope = schedule.append_child("scope");
            scope.append_attribute("startTime") =
                spi_object::time_text(time_value_of(programmes.begin()->first, offset)).c_str();
            scope.append_attribute("stopTime") = spi_object::time_text(time_value_of(stop, offset)).c_str();
            scope.append_child("serviceScope").append_attribute("id") =
                spi_object::content_id_text(content_id_of(of.id, on)).c_str();
            for (const auto& [start, each] : programmes)
                schedule.append_copy(each.first_child());
            files[kRoot + path_of(of.id, on) + "/" + day_name(day) + "_PI.xml"] = text_of(document);
        }
    }

    const programme_guide& guide_;
    std::map<key_t, std::map<std::int64_t, pugi::xml_document>> programmes_;
};

// One document of all service information: a service that several objects have is there once, as the last of
// them describes it, with the bearers of all.
class service_document {
 public:
    explicit service_document(const programme_guide& of) : guide_(of) {}

    std::string write() {
        for (const auto& source : guide_.sources)
            if (!source->empty() && source->front() == tag::service_information) read(*source);
        pugi::xml_document document;
        pugi::xml_node services = begin(document, "serviceInformation").append_child("services");
        for (const std::string& key : order_)
            services.append_copy(found_.at(key).first_child());
        return order_.empty() ? std::string() : text_of(document);
    }

 private:
    void read(const bytes& source) {
        pugi::xml_document document;
        document.load_string(spi_object::xml_of(spi_object::decode(source)).text.c_str(), pugi::parse_full);
        const pugi::xml_node root = document.child("serviceInformation");
        const std::string language = root.attribute("xml:lang").value();
        for (const pugi::xml_node ensemble : root.children("ensemble"))
            for (pugi::xml_node each : ensemble.children("service"))
                take(each, language);
    }

    // Services are the same by what their bearers name but for the ensemble.
    static std::string key_of(pugi::xml_node of) {
        std::set<std::string> names;
        for (const pugi::xml_node bearer : of.children("bearer"))
            if (const auto id = spi_object::parse_content_id(bearer.attribute("id").value()))
                names.insert(std::to_string(id->ecc) + "." + std::to_string(id->sid) + "." +
                             std::to_string(id->scids));
        std::string key;
        for (const std::string& each : names)
            key += each + " ";
        return key;
    }

    void take(pugi::xml_node of, const std::string& language) {
        const std::string key = key_of(of);
        if (key.empty()) return;
        if (!language.empty())
            for (pugi::xml_node each : of.children())
                if (std::strstr(each.name(), "Name") != nullptr && !each.attribute("xml:lang"))
                    each.append_attribute("xml:lang") = language.c_str();
        pugi::xml_document made;
        pugi::xml_node copy = made.append_copy(of);
        const auto known = found_.find(key);
        if (known == found_.end()) {
            order_.push_back(key);
        } else {
            for (const pugi::xml_node bearer : known->second.first_child().children("bearer"))
                if (!copy.find_child_by_attribute("bearer", "id", bearer.attribute("id").value()))
                    copy.append_copy(bearer);
        }
        found_[key] = std::move(made);
    }

    const programme_guide& guide_;
    std::vector<std::string> order_;
    std::map<std::string, pugi::xml_document> found_;
};

void add_pictures(const std::vector<guide::picture>& from, std::map<std::string, std::string>& files,
                  std::map<std::string, std::string>& urls, std::vector<std::string>& said) {
    for (const guide::picture& each : from) {
        if (each.content == nullptr || urls.count(each.url) != 0) continue;
        const std::string base = "logos/" + file_name_of(each.url);
        std::string name = base;
        for (unsigned i = 2; files.count(name) != 0; ++i)
            name = base + "-" + std::to_string(i);
        if (name != "logos/" + each.url)
            said.push_back("the picture " + in_quotes(each.url, 200) + " is in the file " + printable(name));
        urls.emplace(each.url, name);
        files.emplace(name, std::string(each.content->begin(), each.content->end()));
    }
}

}  // namespace

std::map<std::string, std::string> spi_documents(const programme_guide& of, std::vector<std::string>& said) {
    std::map<std::string, std::string> files;
    const std::string services = service_document(of).write();
    if (!services.empty()) files[std::string(kRoot) + "SI.xml"] = services;
    schedules(of).write(files);
    std::map<std::string, std::string> urls;
    for (const service& each : of.services) {
        add_pictures(each.pictures, files, urls, said);
        for (const guide::programme& one : each.programmes)
            add_pictures(one.pictures, files, urls, said);
    }
    return files;
}

}  // namespace dabspi
