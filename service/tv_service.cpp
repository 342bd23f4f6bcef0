#include "service/tv_service.h"

#include <algorithm>
#include <cctype>
#include <list>
#include <type_traits>

#include "format/format_letters.h"
#include "page/share_page.h"
#include "platform/ko_securec.h"

namespace {

// d and D, f and F are one kind each: a number fits either width.
bool SameKind(char a, char b) {
    return std::tolower(static_cast<unsigned char>(a)) ==
           std::tolower(static_cast<unsigned char>(b));
}

// Sets a value to another of its kind.
struct ConvertFrom {
    const FieldValue& from;

    template <typename Number>
    void operator()(Number& value) const {
        std::visit(
            [&value](const auto& number) {
                if constexpr (std::is_arithmetic_v<std::decay_t<decltype(number)>>) {
                    value = static_cast<Number>(number);
                }
            },
            from);
    }
    void operator()(android::String16& value) const { value = std::get<android::String16>(from); }
};

// Makes a value up; `number` counts from 1 through a reply.
struct SampleOf {
    int number;

    void operator()(std::int32_t& value) const { value = number; }
    void operator()(std::int64_t& value) const { value = number * std::int64_t{10'000'000'000}; }
    void operator()(float& value) const { value = static_cast<float>(number) + 0.5F; }
    void operator()(double& value) const { value = number + 0.25; }
    void operator()(android::String16& value) const {
        value = android::String16(("sample" + std::to_string(number)).c_str());
    }
};

// Deals the request's arguments out to the letters of a reply.
class ReplyValues {
public:
    explicit ReplyValues(const std::vector<ParcelField>& arguments)
        : m_unused(arguments.begin(), arguments.end()) {}

    FieldValue Next(char letter) {
        ++m_number;
        const auto found = std::find_if(m_unused.begin(), m_unused.end(), [letter](const auto& a) {
            return SameKind(a.letter, letter);
        });
        FieldValue value = ZeroOf(letter);
        if (found == m_unused.end()) {
            std::visit(SampleOf{m_number}, value);
            return value;
        }
        std::visit(ConvertFrom{found->value}, value);
        m_unused.erase(found);
        return value;
    }

private:
    std::list<ParcelField> m_unused;
    int m_number = 0;
};

// The bytes and the text of one record.
std::string WriteRecord(android::Parcel& record, const std::string& format, ReplyValues& values) {
    std::string text;
    for (const char letter : format) {
        if (FindFormatLetter(letter) != nullptr && !IsWithoutValue(letter)) {
            const FieldValue value = values.Next(letter);
            WriteField(record, value);
            text += " " + FieldText(value);
        }
    }
    return text;
}

// Appends as many records as fit the page and describes their values.
std::string AppendRecords(TvService::Bytes& reply, const std::string& format, unsigned int records,
                          const std::vector<ParcelField>& arguments) {
    std::string text;
    ReplyValues values(arguments);
    for (unsigned int i = 0; i < records; ++i) {
        android::Parcel record;
        const std::string recordText = WriteRecord(record, format, values);
        if (record.dataSize() == 0) {
            return text;  // a format without values: so are all further records
        }
        if (reply.size() + record.dataSize() > kDataCapacity) {
            return text + " (" + std::to_string(records - i) + " records do not fit)";
        }
        reply.insert(reply.end(), record.data(), record.data() + record.dataSize());
        text += recordText;
    }
    return text;
}

std::int32_t Instruction(const TvService::Bytes& request) {
    android::Parcel parcel;
    parcel.setData(request.data(), request.size());
    return parcel.readInt32();
}

// An answer that is a status alone, as far as it goes.
TvService::Answer StatusAnswer(std::int32_t instruct, const std::string& what,
                               std::int32_t status) {
    char number[16];
    sprintf_s(number, sizeof(number), "0x%x", static_cast<std::uint32_t>(instruct));
    android::Parcel reply;
    reply.writeInt32(status);
    return {{reply.data(), reply.data() + reply.dataSize()},
            number + what + " -> status " + std::to_string(status)};
}

}  // namespace

TvService::TvService(const KoFileParse& catalogue, Options options)
    : m_cmds(catalogue), m_options(options) {}

TvService::Answer TvService::RefuseOld(const Bytes& request) {
    return StatusAnswer(Instruction(request), " was there before the start", kOldRequest);
}

TvService::Answer TvService::Handle(const Bytes& request) const {
    const CmdsByNumber::Request decoded = m_cmds.Decode(request);
    if (decoded.cmd == nullptr) {
        return decoded.known
                   ? StatusAnswer(decoded.instruct, " arguments do not decode", kBadRequest)
                   : StatusAnswer(decoded.instruct, " unknown instruction", kUnknownInstruction);
    }
    std::string what = " " + decoded.cmd->m_strCmd;
    for (const ParcelField& argument : decoded.arguments) {
        what += " " + FieldText(argument.value);
    }
    Answer answer = StatusAnswer(decoded.instruct, what, m_options.status);
    if (m_options.status == 0) {
        answer.summary += AppendRecords(answer.reply, decoded.cmd->m_strPrintFmt, m_options.records,
                                        decoded.arguments);
    }
    return answer;
}
