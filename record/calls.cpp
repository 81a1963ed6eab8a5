#include "record/calls.h"

namespace zrrecord
{

void Writer::decimal(uint64_t number, int digits)
{
    char reversed[24];
    int count = 0;
    for (; number != 0 || count < digits; number /= 10)
        reversed[count++] = static_cast<char>('0' + number % 10);
    while (count > 0)
        put(reversed[--count]);
}

namespace
{

constexpr char kDigits[] = "0123456789abcdef";
constexpr size_t kListPorts = 32; // of a list of ports, unless its end comes first
constexpr uint32_t kListEnd = 255;
constexpr size_t kMostBytes = 4096;
constexpr int kMostNodes = 64;

template <class T> T *at(uint64_t bits)
{
    return reinterpret_cast<T *>(static_cast<uintptr_t>(bits));
}

uint64_t load(const void *from, size_t width)
{
    uint64_t number = 0;
    memcpy(&number, from, width); // little-endian
    return number;
}

void writePointer(Writer &out, uint64_t address)
{
    if (const uint32_t block = blockNumber(address)) {
        out.put('m');
        out.decimal(block);
    } else {
        out.text(address == 0 ? "null" : "ptr");
    }
}

void writeBytes(Writer &out, const uint8_t *bytes, size_t count)
{
    for (size_t i = 0; i < count; ++i) {
        if (i != 0)
            out.put(':');
        out.put(kDigits[bytes[i] >> 4]);
        out.put(kDigits[bytes[i] & 15]);
    }
}

void writeWords(Writer &out, const void *words, size_t count, size_t width)
{
    out.put('[');
    for (size_t i = 0; i < count; ++i) {
        if (i != 0)
            out.put(' ');
        out.number(load(static_cast<const char *>(words) + i * width, width));
    }
    out.put(']');
}

void writeText(Writer &out, const char *text, size_t most)
{
    out.put('"');
    for (size_t i = 0; i < most && text[i] != '\0'; ++i) {
        const auto c = static_cast<unsigned char>(text[i]);
        if (c == '"' || c == '\\') {
            out.put('\\');
            out.put(text[i]);
        } else if (c == '\n' || c == '\r' || c == '\t') {
            out.put('\\');
            out.put(c == '\n' ? 'n' : c == '\r' ? 'r' : 't');
        } else if (c < ' ' || c > '~') {
            out.text("\\x");
            out.put(kDigits[c >> 4]);
            out.put(kDigits[c & 15]);
        } else {
            out.put(text[i]);
        }
    }
    out.put('"');
}

bool isZero(const char *bytes, size_t count)
{
    return count == 0 || (bytes[0] == 0 && memcmp(bytes, bytes + 1, count - 1) == 0);
}

// Fields that are 0 are left out, and so are the zeros at an array's end.
void writeRecord(Writer &out, const char *record, const Type &type)
{
    out.put('{');
    bool first = true;
    for (const Field *field = type.fields; field != type.fields + type.fieldCount; ++field) {
        const char *value = record + field->offset;
        size_t count = field->count;
        if (isZero(value, count * field->width))
            continue;
        while (isZero(value + (count - 1) * field->width, field->width))
            --count;
        if (!first)
            out.put(' ');
        first = false;
        out.text(field->name);
        out.put('=');
        if (field->pointer)
            writePointer(out, load(value, sizeof(void *)));
        else if (field->count == 1)
            out.number(load(value, field->width));
        else if (field->width == 1)
            writeBytes(out, reinterpret_cast<const uint8_t *>(value), count);
        else
            writeWords(out, value, count, field->width);
    }
    out.put('}');
}

size_t listLength(const Function &function, const uint64_t *bits)
{
    if (!function.ports)
        return 1;
    for (int i = 0; i < function.count; ++i) {
        if (function.types[i].kind != Kind::List || bits[i] == 0)
            continue;
        for (size_t n = 0; n < kListPorts; ++n)
            if (at<const uint32_t>(bits[i])[n] == kListEnd)
                return n + 1;
        return kListPorts;
    }
    return 1;
}

void writeBehind(Writer &out, const Type &type, uint64_t address)
{
    if (type.kind == Kind::Output)
        out.number(load(at<const void>(address), type.size));
    else
        writeRecord(out, at<const char>(address), type);
}

// The nodes of a rule, which the SDK links without being given each.
void writeChain(Writer &out, const FilterCfg &cfg)
{
    out.text(" chain=[");
    int nodes = 0;
    for (const FilterField *node = cfg.head; node != nullptr && nodes < kMostNodes; node = node->next) {
        if (nodes++ != 0)
            out.put(' ');
        writePointer(out, reinterpret_cast<uintptr_t>(node));
    }
    out.put(']');
}

void writeName(Writer &out, const char *&names)
{
    while (*names != '\0' && *names != ' ')
        out.put(*names++);
    while (*names == ' ')
        ++names;
    out.put('=');
}

void skipName(const char *&names)
{
    Writer nowhere{nullptr, nullptr};
    writeName(nowhere, names);
}

} // namespace

void Writer::number(uint64_t number)
{
    if (number <= 9999) {
        decimal(number);
        return;
    }
    char reversed[16];
    int count = 0;
    for (; number != 0; number >>= 4)
        reversed[count++] = kDigits[number & 15];
    text("0x");
    while (count > 0)
        put(reversed[--count]);
}

size_t savedSize(const Function &function)
{
    size_t size = 0;
    for (int i = 0; i < function.count; ++i)
        if (function.types[i].way != Way::In)
            size += function.types[i].size;
    return size;
}

void save(const Function &function, const uint64_t *bits, char *copy)
{
    for (int i = 0; i < function.count; ++i) {
        if (function.types[i].way == Way::In)
            continue;
        if (bits[i] != 0)
            memcpy(copy, at<const void>(bits[i]), function.types[i].size);
        copy += function.types[i].size;
    }
}

void writeCall(Writer &out, const Function &function, const uint64_t *bits, const char *text)
{
    out.text(function.name);
    out.put('(');
    const char *names = function.names;
    for (int i = 0; i < function.count; ++i) {
        const Type &type = function.types[i];
        if (i != 0)
            out.text(", ");
        const bool formatted = text != nullptr && i + 1 == function.count;
        writeName(out, names);
        if (formatted)
            writeText(out, text, kMostBytes);
        else if (type.kind == Kind::Number)
            out.number(bits[i] & (type.size == 8 ? UINT64_MAX : (uint64_t{1} << (type.size * 8)) - 1));
        else if (bits[i] == 0 || type.kind == Kind::Pointer)
            writePointer(out, bits[i]);
        else if (type.way == Way::Out)
            out.put('&');
        else if (type.kind == Kind::Text)
            writeText(out, at<const char>(bits[i]), kMostBytes);
        else if (type.kind == Kind::Mac)
            writeBytes(out, at<const uint8_t>(bits[i]), 6);
        else if (type.kind == Kind::List)
            writeWords(out, at<const void>(bits[i]), listLength(function, bits), sizeof(uint32_t));
        else if (type.kind == Kind::Bytes)
            // What does not fit its destination is not read.
            writeBytes(out, at<const uint8_t>(bits[i]),
                       bits[i + 1] <= bits[i - 1] && bits[i + 1] <= kMostBytes ? bits[i + 1] : 0);
        else
            writeBehind(out, type, bits[i]);
    }
    out.put(')');
}

void writeEnd(Writer &out, const Function &function, const uint64_t *bits, uint64_t result, const char *saved)
{
    const Type &type = function.result;
    if (type.kind != Kind::Nothing)
        out.text(" = ");
    if (type.kind == Kind::Number)
        out.number(result & (type.size == 8 ? UINT64_MAX : 0xFFFFFFFF));
    else if (type.kind == Kind::Text && result != 0)
        writeText(out, at<const char>(result), kMostBytes);
    else if (type.kind != Kind::Nothing)
        writePointer(out, result);

    const char *names = function.names;
    for (int i = 0; i < function.count; ++i) {
        const Type &argument = function.types[i];
        const char *before = saved;
        if (argument.way == Way::In || bits[i] == 0) {
            skipName(names);
            saved += argument.way == Way::In ? 0 : argument.size;
            continue;
        }
        saved += argument.size;
        const bool changed =
            argument.kind != Kind::Buffer && memcmp(before, at<const void>(bits[i]), argument.size) != 0;
        if (!changed && (argument.way == Way::Both || result != 0)) {
            skipName(names);
            continue;
        }
        out.put(' ');
        writeName(out, names);
        if (argument.kind == Kind::Buffer)
            writeText(out, at<const char>(bits[i]), bits[i + 1] < kMostBytes ? bits[i + 1] : kMostBytes);
        else
            writeBehind(out, argument, bits[i]);
    }
    if (function.chains && bits[1] != 0)
        writeChain(out, *at<const FilterCfg>(bits[1]));
}

void writeUnitInfo(Writer &out, uint32_t unit, const LswmUnitInfo &info)
{
    static constexpr Type kInfo{Kind::Record, Way::In, sizeof(LswmUnitInfo), Fields<LswmUnitInfo>::kList,
                                sizeof(Fields<LswmUnitInfo>::kList) / sizeof(Field)};
    out.text("g_lswmInfo(unit=");
    out.decimal(unit);
    out.text(", info=");
    writeRecord(out, reinterpret_cast<const char *>(&info), kInfo);
    out.text(", portMap=");
    if (info.portMap == nullptr)
        out.text("null");
    else
        writeWords(out, info.portMap, LSWM_PORT_SETS * 4, sizeof(uint32_t));
    out.put(')');
}

void writeLayout(Writer &out)
{
    out.text("layout order=little pointer=");
    out.decimal(sizeof(void *));
#define ZR_LAYOUT(record)                                                                                      \
    out.text(" " #record "=");                                                                                 \
    out.decimal(sizeof(record));
    ZR_RECORDS(ZR_LAYOUT)
    ZR_LAYOUT(LswmUnitInfo)
#undef ZR_LAYOUT
}

} // namespace zrrecord
