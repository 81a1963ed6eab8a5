// Makes the frames of tests with a packet library, as "frame: hexadecimal bytes" lines and a pcap capture:
//   make_frames LIST FRAMES CAPTURE
// A program of the build machine, so that a cross build's tests have frames without the library. LIST tells
// how frames are written.
#include <tins/tins.h>

#include <chrono>
#include <cstdint>
#include <fstream>
#include <functional>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace
{

using Bytes = std::vector<uint8_t>;

const Tins::HWAddress<6> kHost("02:00:00:00:00:0a");
const Tins::HWAddress<6> kGateway("02:00:00:00:00:01");
const Tins::HWAddress<6> kBroadcast("ff:ff:ff:ff:ff:ff");
constexpr const char *kHostIp = "198.51.100.7";
constexpr const char *kGatewayIp = "192.0.2.1";

[[noreturn]] void refuse(const std::string &why)
{
    throw std::runtime_error(why);
}

unsigned number(const std::string &text, unsigned most)
{
    if (text.empty() || text.size() > 5 || text.find_first_not_of("0123456789") != std::string::npos ||
        std::stoul(text) > most)
        refuse("'" + text + "' is no number up to " + std::to_string(most));
    return static_cast<unsigned>(std::stoul(text));
}

struct Ports {
    uint16_t source;
    uint16_t destination;
};

// The words and options behind a frame's kind. Each is taken once; finish() refuses what nobody took.
class Words
{
public:
    explicit Words(std::istringstream &line)
    {
        for (std::string word; line >> word;) {
            if (const size_t sign = word.find('='); sign != std::string::npos)
                options_[word.substr(0, sign)] = word.substr(sign + 1);
            else
                words_.push_back(word);
        }
    }
    std::string text()
    {
        if (next_ == words_.size())
            refuse("a word is missing");
        return words_[next_++];
    }
    unsigned number(unsigned most) { return ::number(text(), most); }
    template <class Value> Value oneOf(const std::map<std::string, Value> &values)
    {
        const std::string word = text();
        const auto found = values.find(word);
        if (found == values.end())
            refuse("'" + word + "' is not known");
        return found->second;
    }
    Ports ports()
    {
        const std::string word = text();
        const size_t arrow = word.find('>');
        if (arrow == std::string::npos)
            refuse("'" + word + "' is not SPORT>DPORT");
        return {static_cast<uint16_t>(::number(word.substr(0, arrow), 0xFFFF)),
                static_cast<uint16_t>(::number(word.substr(arrow + 1), 0xFFFF))};
    }
    std::string option(const std::string &name, const std::string &otherwise)
    {
        const auto node = options_.extract(name);
        return node ? node.mapped() : otherwise;
    }
    void finish() const
    {
        if (next_ < words_.size())
            refuse("'" + words_[next_] + "' is too much");
        if (!options_.empty())
            refuse("there is no option '" + options_.begin()->first + "' here");
    }

private:
    std::vector<std::string> words_;
    size_t next_ = 0;
    std::map<std::string, std::string> options_;
};

Bytes fromHex(const std::string &text)
{
    if (text.size() % 2 != 0 || text.find_first_not_of("0123456789abcdef") != std::string::npos)
        refuse("'" + text + "' is no hexadecimal text");
    Bytes bytes;
    for (size_t i = 0; i < text.size(); i += 2)
        bytes.push_back(static_cast<uint8_t>(std::stoul(text.substr(i, 2), nullptr, 16)));
    return bytes;
}

std::string toHex(const Bytes &bytes)
{
    constexpr char kDigits[] = "0123456789abcdef";
    std::string text;
    for (const uint8_t byte : bytes) {
        text += kDigits[byte >> 4U];
        text += kDigits[byte & 15U];
    }
    return text;
}

template <class Pdu> Bytes bytes(Pdu pdu)
{
    return pdu.serialize();
}

Tins::EthernetII ethernet()
{
    return {kGateway, kHost};
}

Tins::IP ip()
{
    return {kGatewayIp, kHostIp};
}

Bytes arp(Words &words)
{
    Tins::ARP body(kGatewayIp, "192.0.2.9", kGateway, kHost);
    body.opcode(words.oneOf<Tins::ARP::Flags>({{"request", Tins::ARP::REQUEST}, {"reply", Tins::ARP::REPLY}}));
    return bytes(Tins::EthernetII(kBroadcast, kHost) / body);
}

template <class Transport> Bytes ipv4(Words &words, unsigned zeroes)
{
    const Ports ports = words.ports();
    const Tins::EthernetII outer(kGateway, Tins::HWAddress<6>(words.option("srcmac", kHost.to_string())));
    const Tins::IP packet(words.option("dstip", kGatewayIp), words.option("srcip", kHostIp));
    const Bytes zeroPayload(number(words.option("bytes", std::to_string(zeroes)), 1400));
    const Bytes payload = fromHex(words.option("data", toHex(zeroPayload)));
    return bytes(outer / packet / Transport(ports.destination, ports.source) / Tins::RawPDU(payload));
}

Bytes udp(Words &words)
{
    return ipv4<Tins::UDP>(words, 32);
}

Bytes tcp(Words &words)
{
    return ipv4<Tins::TCP>(words, 0);
}

Bytes ping(Words &)
{
    return bytes(ethernet() / ip() / Tins::ICMP());
}

Bytes udp6(Words &words)
{
    const Ports ports = words.ports();
    return bytes(ethernet() / Tins::IPv6("2001:db8::1", "2001:db8::2") /
                 Tins::UDP(ports.destination, ports.source));
}

Bytes dhcp(Words &words)
{
    const Ports ports = words.ports();
    Tins::DHCP body;
    body.type(words.oneOf<Tins::DHCP::Flags>({{"discover", Tins::DHCP::DISCOVER},
                                              {"request", Tins::DHCP::REQUEST},
                                              {"offer", Tins::DHCP::OFFER},
                                              {"ack", Tins::DHCP::ACK}}));
    body.chaddr(kHost);
    body.end();
    return bytes(Tins::EthernetII(kBroadcast, kHost) / Tins::IP("255.255.255.255", "0.0.0.0") /
                 Tins::UDP(ports.destination, ports.source) / body);
}

Bytes fragment(Words &words)
{
    Tins::IP packet = ip();
    packet.fragment_offset(static_cast<uint16_t>(words.number(0x1FFF)));
    packet.flags(Tins::IP::MORE_FRAGMENTS);
    packet.protocol(17);
    return bytes(ethernet() / packet / Tins::RawPDU(bytes(Tins::UDP(67, 68) / Tins::RawPDU(Bytes(32)))));
}

Bytes tagged(Words &words)
{
    Tins::Dot1Q tag(static_cast<uint16_t>(words.number(4094)));
    tag.priority(static_cast<uint8_t>(words.number(7)));
    return bytes(ethernet() / tag / ip() / Tins::UDP(123, 123) / Tins::RawPDU(Bytes(48)));
}

Bytes stp(Words &)
{
    return bytes(Tins::Dot3(kBroadcast, kHost) / Tins::LLC() / Tins::STP());
}

const std::map<std::string, std::function<Bytes(Words &)>> kKinds = {
    {"arp", arp},   {"udp", udp},           {"tcp", tcp},       {"ping", ping}, {"udp6", udp6},
    {"dhcp", dhcp}, {"fragment", fragment}, {"tagged", tagged}, {"stp", stp},
};

Bytes make(const std::string &name)
{
    std::istringstream line(name);
    std::string kind;
    line >> kind;
    const auto found = kKinds.find(kind);
    if (found == kKinds.end())
        refuse("there is no kind of frame '" + kind + "'");
    Words words(line);
    Bytes frame = found->second(words);
    words.finish();
    return frame;
}

struct Made {
    std::string text; // a line for each frame
    std::vector<Bytes> capture;
};

Made makeAll(std::istream &list, unsigned &lineNumber)
{
    constexpr std::string_view kCapture = "capture ";
    Made made;
    std::map<std::string, Bytes> frames;
    for (std::string line; std::getline(list, line);) {
        ++lineNumber;
        if (line.empty() || line[0] == '#')
            continue;
        if (line.starts_with(kCapture)) {
            const auto found = frames.find(line.substr(kCapture.size()));
            if (found == frames.end())
                refuse("the frame does not stand above");
            made.capture.push_back(found->second);
            continue;
        }
        const auto [frame, isNew] = frames.emplace(line, make(line));
        if (!isNew)
            refuse("the frame stands above already");
        made.text += line + ": " + toHex(frame->second) + '\n';
    }
    return made;
}

void write(const std::string &path, const std::string &text)
{
    std::ofstream out(path);
    out << text;
    out.close();
    if (!out)
        refuse(path + " cannot be written");
}

void writeCapture(const std::string &path, const std::vector<Bytes> &frames)
{
    Tins::PacketWriter writer(path, Tins::DataLinkType<Tins::EthernetII>());
    for (const Bytes &frame : frames) {
        // No time of day: the same list makes the same file.
        Tins::Packet packet(Tins::RawPDU(frame), Tins::Timestamp(std::chrono::microseconds(0)));
        writer.write(packet);
    }
}

} // namespace

int main(int argc, char **argv)
{
    if (argc != 4) {
        std::cerr << "usage: make_frames LIST FRAMES CAPTURE\n";
        return 2;
    }
    unsigned lineNumber = 0;
    try {
        std::ifstream list(argv[1]);
        if (!list)
            refuse("cannot be read");
        const Made made = makeAll(list, lineNumber);
        write(argv[2], made.text);
        writeCapture(argv[3], made.capture);
    } catch (const std::exception &error) {
        std::cerr << argv[1] << ":" << lineNumber << ": " << error.what() << '\n';
        return 1;
    }
    return 0;
}
