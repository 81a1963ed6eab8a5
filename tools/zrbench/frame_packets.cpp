// Frames and captures by libtins and libpcap.
#include <algorithm>
#include <cstring>
#include <fmt/format.h>
#include <map>
#include <optional>
#include <pcap/pcap.h>
#include <tins/tins.h>

#include "tools/zrbench/command.h"
#include "tools/zrbench/frame.h"
#include "tools/zrbench/suggest.h"
#include "tools/zrbench/values.h"

namespace zrbench
{

namespace
{

constexpr uint32_t kFcs = 4;
constexpr uint32_t kLargest = 65536;

// ---- frames of words --------------------------------------------------------------------------------------

constexpr std::pair<std::string_view, std::string_view> kRuleNames[] = {{"dstMac", "dst"}, {"srcMac", "src"}};
constexpr std::pair<std::string_view, uint32_t> kProtocols[] = {
    {"icmp", 1}, {"igmp", 2}, {"tcp", 6}, {"udp", 17}, {"icmpv6", 58}};

// The words of a frame by name.
class Fields
{
public:
    explicit Fields(std::string_view text)
    {
        const std::vector<std::string_view> known = split(kFrameWords, '|');
        for (std::string_view word : split(text, ' ')) {
            if (word.empty())
                continue;
            const size_t equals = std::min(word.find('='), word.size());
            std::string_view name = word.substr(0, equals);
            for (const auto &[rule, frame] : kRuleNames)
                name = name == rule ? frame : name;
            if (equals == word.size() || std::ranges::count(known, name) == 0)
                throw UsageError{
                    fmt::format("expected hexadecimal digits or NAME=VALUE with one of {}, found {}{}",
                                fmt::join(known, ", "), shown(word), didYouMean(name, known))};
            if (!values_.emplace(name, word.substr(equals + 1)).second)
                throw UsageError{fmt::format("{} is given twice", name)};
        }
    }
    bool has(std::string_view name) const { return values_.contains(name); }
    bool hasAny(std::initializer_list<std::string_view> names) const
    {
        return std::ranges::any_of(names, [&](std::string_view name) { return has(name); });
    }
    void notBeside(std::string_view name, std::initializer_list<std::string_view> others) const
    {
        for (std::string_view other : others)
            if (has(other))
                throw UsageError{fmt::format("{} does not go with {}", other, name)};
    }
    std::string text(std::string_view name, std::string otherwise = {}) const
    {
        const auto found = values_.find(name);
        return found == values_.end() ? otherwise : found->second;
    }
    uint32_t number(std::string_view name, uint32_t most, uint32_t otherwise = 0) const
    {
        if (!has(name))
            return otherwise;
        const std::optional<uint32_t> number = parseNumber(text(name));
        if (!number || *number > most)
            refuse(name, fmt::format("a number up to {}", most));
        return *number;
    }
    // A value that the library reads.
    template <class T> T parsed(std::string_view name, const std::string &otherwise, const char *expected) const
    {
        try {
            return T(text(name, otherwise));
        } catch (const std::exception &) {
            refuse(name, expected);
        }
    }
    Tins::HWAddress<6> mac(std::string_view name, const std::string &otherwise) const
    {
        if (has(name)) {
            try {
                checkedValue({name, Type::Mac}, text(name));
            } catch (const ArgumentError &) {
                refuse(name, "an address such as 02:00:00:00:00:01");
            }
        }
        return Tins::HWAddress<6>(text(name, otherwise));
    }
    [[noreturn]] void refuse(std::string_view name, std::string_view expected) const
    {
        throw UsageError{fmt::format("{}: expected {}, found {}", name, expected, shown(text(name)))};
    }

private:
    std::map<std::string, std::string, std::less<>> values_;
};

uint32_t protocolOf(const Fields &fields, bool v6)
{
    const std::string name = fields.text("ipProto", fields.hasAny({"l4Src", "l4Dst"}) ? "udp"
                                                    : v6                              ? "59"
                                                                                      : "253");
    for (const auto &[known, number] : kProtocols)
        if (known == name)
            return number;
    const std::optional<uint32_t> number = parseNumber(name);
    if (!number || *number > 0xFF)
        fields.refuse("ipProto", "tcp, udp, icmp, icmpv6, igmp or a number up to 255");
    return *number;
}

void addLayer4(Tins::PDU &frame, const Fields &fields, uint32_t protocol)
{
    const auto source = static_cast<uint16_t>(fields.number("l4Src", 0xFFFF, 49152));
    const auto destination = static_cast<uint16_t>(fields.number("l4Dst", 0xFFFF, 9));
    if (protocol == 6) {
        Tins::TCP tcp(destination, source);
        tcp.flags(Tins::TCP::SYN);
        frame /= tcp;
    } else if (protocol == 17) {
        frame /= Tins::UDP(destination, source);
    } else {
        fields.notBeside(fmt::format("IP protocol {}", protocol), {"l4Src", "l4Dst"});
        if (protocol == 1)
            frame /= Tins::ICMP();
        else if (protocol == 58)
            frame /= Tins::ICMPv6(Tins::ICMPv6::ECHO_REQUEST);
    }
}

void addIp(Tins::PDU &frame, const Fields &fields)
{
    const bool v6 = (fields.text("srcIp") + fields.text("dstIp")).find(':') != std::string::npos;
    const uint32_t protocol = protocolOf(fields, v6);
    const auto dscp = static_cast<uint8_t>(fields.number("dscp", 63) << 2U);
    const auto ttl = static_cast<uint8_t>(fields.number("ttl", 255, 64));
    if (v6) {
        constexpr const char *kExpected = "an IPv6 address, as the other one";
        Tins::IPv6 ip(fields.parsed<Tins::IPv6Address>("dstIp", "2001:db8::2", kExpected),
                      fields.parsed<Tins::IPv6Address>("srcIp", "2001:db8::1", kExpected));
        ip.traffic_class(dscp);
        ip.hop_limit(ttl);
        ip.next_header(static_cast<uint8_t>(protocol));
        frame /= ip;
    } else {
        constexpr const char *kExpected = "an address such as 192.0.2.1 or 2001:db8::1";
        Tins::IP ip(fields.parsed<Tins::IPv4Address>("dstIp", "192.0.2.2", kExpected),
                    fields.parsed<Tins::IPv4Address>("srcIp", "192.0.2.1", kExpected));
        ip.tos(dscp);
        ip.ttl(ttl);
        ip.protocol(static_cast<uint8_t>(protocol));
        frame /= ip;
    }
    addLayer4(frame, fields, protocol);
}

void addArp(Tins::PDU &frame, const Fields &fields, const Tins::HWAddress<6> &source,
            const Tins::HWAddress<6> &destination)
{
    const std::string operation = fields.text("arp");
    if (operation != "request" && operation != "reply")
        fields.refuse("arp", "request or reply");
    constexpr const char *kExpected = "an address such as 192.0.2.1";
    Tins::ARP arp(fields.parsed<Tins::IPv4Address>("dstIp", "192.0.2.2", kExpected),
                  fields.parsed<Tins::IPv4Address>("srcIp", "192.0.2.1", kExpected),
                  operation == "reply" ? destination : Tins::HWAddress<6>(), source);
    arp.opcode(operation == "reply" ? Tins::ARP::REPLY : Tins::ARP::REQUEST);
    frame /= arp;
}

void addTag(Tins::PDU &frame, const Fields &fields, std::string_view vlan, std::string_view priority)
{
    if (!fields.hasAny({vlan, priority}))
        return;
    Tins::Dot1Q tag(static_cast<uint16_t>(fields.number(vlan, 0xFFF)), false);
    tag.priority(static_cast<uint8_t>(fields.number(priority, 7)));
    frame /= tag;
}

void setEtherType(Tins::PDU &last, uint32_t etherType)
{
    if (auto *tag = dynamic_cast<Tins::Dot1Q *>(&last))
        tag->payload_type(static_cast<uint16_t>(etherType));
    else
        dynamic_cast<Tins::EthernetII &>(last).payload_type(static_cast<uint16_t>(etherType));
}

Tins::PDU &lastOf(Tins::PDU &frame)
{
    Tins::PDU *last = &frame;
    while (last->inner_pdu() != nullptr)
        last = last->inner_pdu();
    return *last;
}

// What follows the headers: as long as len= wants it.
std::vector<uint8_t> payloadOf(const Fields &fields, size_t headers)
{
    std::vector<uint8_t> payload;
    if (fields.has("payload")) {
        const std::string digits = fields.text("payload");
        if (digits.find_first_not_of("0123456789abcdefABCDEF") != std::string::npos)
            fields.refuse("payload", "hexadecimal digits");
        payload = parseFrame(digits, 0, 0).bytes;
    }
    if (fields.has("len")) {
        const size_t least = headers + payload.size() + kFcs;
        const uint32_t length = fields.number("len", kLargest);
        if (length < least)
            fields.refuse("len", fmt::format("at least the {} bytes of headers, payload and FCS", least));
        payload.resize(payload.size() + length - least);
    }
    return payload;
}

// ---- frames as text ---------------------------------------------------------------------------------------

template <class Ip> std::string ipText(const Tins::PDU &frame, const char *version)
{
    const auto *ip = frame.find_pdu<Ip>();
    return ip == nullptr
               ? ""
               : fmt::format(", {} {} to {}", version, ip->src_addr().to_string(), ip->dst_addr().to_string());
}

template <class L4> std::string l4Text(const Tins::PDU &frame, const char *name)
{
    const auto *layer = frame.find_pdu<L4>();
    return layer == nullptr ? "" : fmt::format(", {} {} to {}", name, layer->sport(), layer->dport());
}

std::string layersText(const Tins::EthernetII &frame)
{
    std::string text = fmt::format("{} to {}", frame.src_addr().to_string(), frame.dst_addr().to_string());
    uint32_t type = frame.payload_type();
    for (const Tins::PDU *layer = frame.inner_pdu(); layer != nullptr; layer = layer->inner_pdu()) {
        if (const auto *tag = dynamic_cast<const Tins::Dot1Q *>(layer)) {
            text += fmt::format(", VLAN {} priority {}", uint32_t{tag->id()}, uint32_t{tag->priority()});
            type = tag->payload_type();
        }
    }
    if (const auto *arp = frame.find_pdu<Tins::ARP>())
        return text + fmt::format(", ARP {} {} to {}",
                                  arp->opcode() == Tins::ARP::REQUEST ? "request" : "reply",
                                  arp->sender_ip_addr().to_string(), arp->target_ip_addr().to_string());
    const std::string ip = ipText<Tins::IP>(frame, "IPv4") + ipText<Tins::IPv6>(frame, "IPv6");
    if (ip.empty())
        return text + fmt::format(", type {:#06x}", type);
    return text + ip + l4Text<Tins::TCP>(frame, "TCP") + l4Text<Tins::UDP>(frame, "UDP") +
           (frame.find_pdu<Tins::ICMP>() != nullptr || frame.find_pdu<Tins::ICMPv6>() != nullptr ? ", ICMP"
                                                                                                 : "");
}

// ---- captures ---------------------------------------------------------------------------------------------

using Pcap = std::unique_ptr<pcap_t, void (*)(pcap_t *)>;

class PcapWriter final : public CaptureWriter
{
public:
    explicit PcapWriter(const std::string &path)
        : path_(path), format_(pcap_open_dead(DLT_EN10MB, kLargest), pcap_close),
          file_(pcap_dump_open(format_.get(), path.c_str()), pcap_dump_close)
    {
        if (file_ == nullptr)
            throw UsageError{fmt::format("cannot write {}: {}", path, pcap_geterr(format_.get()))};
        flush();
    }
    void write(std::span<const uint8_t> bytes, uint64_t ms) override
    {
        pcap_pkthdr header{};
        header.ts.tv_sec = static_cast<time_t>(ms / 1000);
        header.ts.tv_usec = static_cast<suseconds_t>(ms % 1000 * 1000);
        header.caplen = header.len = static_cast<bpf_u_int32>(bytes.size());
        pcap_dump(reinterpret_cast<u_char *>(file_.get()), &header, bytes.data());
        flush();
    }

private:
    // At once: a later step may read the file.
    void flush()
    {
        if (pcap_dump_flush(file_.get()) != 0)
            throw UsageError{fmt::format("cannot write {}: {}", path_, std::strerror(errno))};
    }

    std::string path_;
    Pcap format_;
    std::unique_ptr<pcap_dumper_t, void (*)(pcap_dumper_t *)> file_;
};

} // namespace

Frame buildFrame(std::string_view words, const std::string &source)
{
    const Fields fields(words);
    const auto from = fields.mac("src", source);
    const auto to = fields.mac("dst", "ff:ff:ff:ff:ff:ff");
    Tins::EthernetII frame(to, from);
    addTag(frame, fields, "vlan", "priority");
    if (fields.hasAny({"innerVlan", "innerPriority"}) && !fields.hasAny({"vlan", "priority"}))
        throw UsageError{"an inner tag needs an outer one: vlan or priority"};
    addTag(frame, fields, "innerVlan", "innerPriority");
    if (fields.has("arp")) {
        fields.notBeside("arp", {"etherType", "ipProto", "l4Src", "l4Dst", "dscp", "ttl"});
        addArp(frame, fields, from, to);
    } else if (fields.hasAny({"srcIp", "dstIp", "ipProto", "l4Src", "l4Dst", "dscp", "ttl"})) {
        fields.notBeside("an IP packet", {"etherType"});
        addIp(frame, fields);
    }
    size_t headers = 0;
    for (const Tins::PDU *layer = &frame; layer != nullptr; layer = layer->inner_pdu())
        headers += layer->header_size();
    const std::vector<uint8_t> payload = payloadOf(fields, headers);
    constexpr uint32_t kExperimental = 0x88B5;
    Tins::PDU &last = lastOf(frame);
    if (&last == &frame || last.pdu_type() == Tins::PDU::DOT1Q) {
        setEtherType(last, fields.number("etherType", 0xFFFF, kExperimental));
        // A type stays only in front of a payload.
        last.inner_pdu(new Tins::RawPDU(payload));
    } else if (!payload.empty()) {
        last.inner_pdu(new Tins::RawPDU(payload));
    }
    Frame built{frame.serialize()};
    // The library writes a tag within a tag as a service tag (0x88A8), which belongs outside.
    if (fields.hasAny({"innerVlan", "innerPriority"})) {
        built.bytes[16] = 0x81;
        built.bytes[17] = 0x00;
    }
    // The library pads to 60 bytes; a runt is asked for.
    if (fields.has("len"))
        built.bytes.resize(fields.number("len", kLargest) - kFcs);
    if (fields.has("fcs") && fields.text("fcs") != "good" && fields.text("fcs") != "bad")
        fields.refuse("fcs", "good or bad");
    built.fcsGood = fields.text("fcs") != "bad";
    return built;
}

std::string describeFrame(std::span<const uint8_t> bytes)
{
    const std::string size = fmt::format("{} bytes with FCS", bytes.size() + kFcs);
    try {
        return fmt::format(
            "{}, {}", layersText(Tins::EthernetII(bytes.data(), static_cast<uint32_t>(bytes.size()))), size);
    } catch (const Tins::exception_base &) {
        return "a frame with a header cut off, " + size;
    }
}

std::vector<Frame> readCapture(const std::string &path)
{
    char error[PCAP_ERRBUF_SIZE] = {};
    const Pcap file(pcap_open_offline(path.c_str(), error), pcap_close);
    if (file == nullptr)
        throw UsageError{fmt::format("cannot read {}: {}", path, error)};
    if (pcap_datalink(file.get()) != DLT_EN10MB)
        throw UsageError{fmt::format("{}: not a capture of Ethernet frames", path)};
    std::vector<Frame> frames;
    pcap_pkthdr *header = nullptr;
    const u_char *bytes = nullptr;
    int result = 0;
    while ((result = pcap_next_ex(file.get(), &header, &bytes)) == 1)
        frames.push_back({{bytes, bytes + header->caplen}});
    if (result == PCAP_ERROR)
        throw UsageError{fmt::format("{}: frame {}: {}", path, frames.size(), pcap_geterr(file.get()))};
    return frames;
}

std::unique_ptr<CaptureWriter> writeCapture(const std::string &path)
{
    return std::make_unique<PcapWriter>(path);
}

} // namespace zrbench
