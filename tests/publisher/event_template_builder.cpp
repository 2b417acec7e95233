#include <string_view>

#include "publisher/image_builder.h"
#include "publisher/test_bytes.h"

namespace corvina::publisher {
namespace {

// A list of values with names; `putValue` writes an entry up to the place of its name.
template <typename PutValue>
void PutValues(TestBytes& out, std::string_view signature, const std::vector<TestProvider::Value>& values,
               PutValue putValue) {
    const std::size_t start = out.Size();
    out.PutText(signature);
    const std::size_t size = out.Hole();
    out.Put32(values.size());
    std::vector<std::size_t> holes;
    for (const TestProvider::Value& value : values) {
        putValue(value);
        holes.push_back(out.Hole());
    }
    auto hole = holes.begin();
    for (const TestProvider::Value& value : values) {
        out.PutName(*hole++, value.Name);
    }
    out.Patch32(size, out.Size() - start);
}

std::vector<std::size_t> PutTemplates(TestBytes& out, const TestProvider& provider) {
    std::vector<std::size_t> places;
    out.PutText("TTBL");
    const std::size_t start = out.Size() - 4;
    const std::size_t size = out.Hole();
    out.Put32(provider.Templates.size());
    for (const TestProvider::Template& one : provider.Templates) {
        places.push_back(out.Size());
        out.PutText("TEMP");
        const std::size_t templateSize = out.Hole();
        out.Put32(one.TopLevelCount == 0 ? one.Items.size() : one.TopLevelCount);
        out.Put32(one.Items.size());
        const std::size_t items = out.Hole();
        out.Put32(1);
        out.PutGuid(provider.Guid);
        out.PutText(std::string_view("\x0F\x01\x01\0\0\0\0\0", 8));  // the values' place in the event's XML
        out.FillHole(items);
        std::vector<std::size_t> holes;
        for (const TestProvider::Item& item : one.Items) {
            out.Put32(item.Flags);
            out.Put(item.InType, 1);
            out.Put(item.OutType, 1);
            out.Put16((item.Flags & 1) != 0 ? item.Length : 0);
            out.Put32(0);
            out.Put16(item.Count);
            out.Put16(item.Length);
            holes.push_back(out.Hole());
        }
        auto hole = holes.begin();
        for (const TestProvider::Item& item : one.Items) {
            out.PutName(*hole++, item.Name);
        }
        out.Patch32(templateSize, out.Size() - places.back());
    }
    out.Patch32(size, out.Size() - start);
    return places;
}

void PutEvents(TestBytes& out, const TestProvider& provider, const std::vector<std::size_t>& templates) {
    out.PutText("EVNT");
    out.Put32(16 + 48 * provider.Events.size());
    out.Put32(provider.Events.size());
    out.Put32(0);
    for (const TestProvider::Event& event : provider.Events) {
        out.Put16(event.Id);
        out.Put(event.Version, 1);
        out.Put(event.Channel, 1);
        out.Put(event.Level, 1);
        out.Put(event.Opcode, 1);
        out.Put16(event.Task);
        out.Put(event.Keywords, 8);
        out.Put32(event.MessageId);
        out.Put32(event.Template < 0 ? 0 : templates[static_cast<std::size_t>(event.Template)]);
        out.FillTo(out.Size() + 24);
    }
}

void PutChannels(TestBytes& out, const TestProvider& provider) {
    const std::size_t start = out.Size();
    out.PutText("CHAN");
    const std::size_t size = out.Hole();
    out.Put32(provider.Channels.size());
    std::vector<std::size_t> holes;
    for (const TestProvider::Channel& channel : provider.Channels) {
        out.Put32(channel.Flags);
        holes.push_back(out.Hole());
        out.Put32(channel.Id);
        out.Put32(channel.MessageId);
    }
    auto hole = holes.begin();
    for (const TestProvider::Channel& channel : provider.Channels) {
        out.PutName(*hole++, channel.Path);
    }
    out.Patch32(size, out.Size() - start);
}

void PutProvider(TestBytes& out, const TestProvider& provider) {
    constexpr std::size_t ListCount = 7;
    const std::size_t start = out.Size();
    out.PutText("WEVT");
    const std::size_t size = out.Hole();
    out.Put32(provider.MessageId);
    out.Put32(ListCount);
    out.Put32(0);
    std::vector<std::size_t> lists;
    for (std::size_t list = 0; list < ListCount; ++list) {
        lists.push_back(out.Hole());
        out.Put32(0);
    }
    auto list = lists.begin();
    out.FillHole(*list++);
    const std::vector<std::size_t> templates = PutTemplates(out, provider);
    // Events before the channels that they name: the order of lists is not fixed.
    out.FillHole(*list++);
    PutEvents(out, provider, templates);
    out.FillHole(*list++);
    PutChannels(out, provider);
    out.FillHole(*list++);
    PutValues(out, "LEVL", provider.Levels, [&out](const TestProvider::Value& value) {
        out.Put32(value.Value);
        out.Put32(value.MessageId);
    });
    out.FillHole(*list++);
    PutValues(out, "OPCO", provider.Opcodes, [&out](const TestProvider::Value& value) {
        out.Put32(value.Value);
        out.Put32(value.MessageId);
    });
    out.FillHole(*list++);
    PutValues(out, "TASK", provider.Tasks, [&](const TestProvider::Value& value) {
        out.Put32(value.Value);
        out.Put32(value.MessageId);
        GuidBytes guid{};
        guid[0] = static_cast<std::byte>(value.Value - 1);  // the first task has none
        out.PutGuid(guid);
    });
    out.FillHole(*list++);
    PutValues(out, "KEYW", provider.Keywords, [&out](const TestProvider::Value& value) {
        out.Put(value.Value, 8);
        out.Put32(value.MessageId);
    });
    out.Patch32(size, out.Size() - start);
}

}  // namespace

TestResource MakeEventTemplate(const std::vector<TestProvider>& providers) {
    TestBytes out;
    out.PutText("CRIM");
    const std::size_t size = out.Hole();
    out.Put16(3);
    out.Put16(1);
    out.Put32(providers.size());
    std::vector<std::size_t> holes;
    for (const TestProvider& provider : providers) {
        out.PutGuid(provider.Guid);
        holes.push_back(out.Hole());
    }
    auto hole = holes.begin();
    for (const TestProvider& provider : providers) {
        out.FillHole(*hole++);
        PutProvider(out, provider);
    }
    out.Patch32(size, out.Size());
    return {0, "WEVT_TEMPLATE", 0x0409, out.Take()};
}

TestProvider PumpProvider() {
    TestProvider pump;
    pump.Guid = ParseGuid(L"{1C2D3E4F-0011-2233-4455-66778899AABB}").value_or(GuidBytes{});
    pump.MessageId = 0x90000001;
    pump.Channels = {{L"System", 8, 1}, {L"Contoso-Pump/Operational", 16, 0, 0x90000002}};
    pump.Levels = {{L"win:Error", 2, 0x50000002}, {L"Loud", 17, 0x50000011}};
    pump.Opcodes = {{L"ValveOfFill", 0x000B0001, 0x3001000B}, {L"Valve", 0x000B0000, 0x3000000B}};
    pump.Tasks = {{L"Fill", 1, 0x70000001}, {L"Drain", 2}};
    pump.Keywords = {{L"Water", 1, 0x10000001}, {L"Oil", 0x8000000000000000, 0x10000040}};
    pump.Events = {{2, 0, 8, 17, 0, 2, 0, 0xB0000002, -1},
                   {1, 1, 16, 2, 11, 1, 0x8000000000000001, 0xB0010001, 0},
                   {1, 0, 16, 2, 11, 1, 0x8000000000000001, 0xB0000001, 0},
                   {3, 0, 0, 0, 0, 0, 0, 0xFFFFFFFF, -1}};
    pump.Templates = {{{{L"Litres", 8, 7}, {L"From & to", 1, 0}}, 0}};
    return pump;
}

TestMessages PumpMessages() {
    return {{0x10000001, L"Water"},         {0x10000040, L"Oil"},      {0x3000000B, L"Valve"},
            {0x3001000B, L"Filling valve"}, {0x50000002, L"Fault"},    {0x50000011, L"Loud"},
            {0x70000001, L"Filling"},       {0x90000001, L"The pump"}, {0x90000002, L"What the pump does"},
            {0xB0000001, L"%1 litres"},     {0xB0000002, L""},         {0xB0010001, L"%1 litres of %2"}};
}

}  // namespace corvina::publisher
