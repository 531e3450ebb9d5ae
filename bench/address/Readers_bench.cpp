// Readers of mail addresses beside GMime and libetpan. Sizes count addresses.
//
//   path             <joe@example.org> as in an envelope: ours by a strict S821Parser, the
//                    peers by their readers of headers, as they have no other
//   route            the same with a source route, which libetpan does not take
//   bare             an address alone, as in a header: ours by S822Parser from here on
//   header           display names, quoted ones, comments, groups, folded lines
//   header_comments  the same with comments behind addresses, too; libetpan does not take
//                    those
//
// Every address is visited once: ours as the parser comes to it, the peers' in the list that
// they make. GMime also decodes display names; libetpan leaves the comments in them.

#include <benchmark/benchmark.h>
#include <gmime/gmime.h>
#include <libetpan/mailimf.h>

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "address/S821Parser.h"
#include "address/S822Parser.h"

namespace {

// --- The readers ---------------------------------------------------------------------------

// Each calls `visit` with every address of a text that it can read.

struct OurEnvelope {
  using Text = SString;
  static constexpr const char* kName = "mailhearth";

  template <class Visit>
  static void Read(const SString& text, Visit visit) {
    S821Parser parser(text, 0);
    const S821Address address = parser.ExtractAddress();
    if (address.IsValid()) visit(address);
  }
};

struct OurHeader {
  using Text = SString;
  static constexpr const char* kName = "mailhearth";

  template <class Visit>
  static void Read(const SString& text, Visit visit) {
    S822Parser parser(text);
    for (S822Address address = parser.NextAddress(); !address.IsEnd() && !address.IsBad();
         address = parser.NextAddress()) {
      visit(address);
    }
  }
};

struct GMime {
  using Text = std::string;
  static constexpr const char* kName = "GMime";

  template <class Visit>
  static void Read(const std::string& text, Visit visit) {
    [[maybe_unused]] static const bool started = (g_mime_init(), true);
    InternetAddressList* const list = internet_address_list_parse(nullptr, text.c_str());
    if (list == nullptr) return;
    Walk(list, visit);
    g_object_unref(list);
  }

 private:
  template <class Visit>
  static void Walk(InternetAddressList* list, Visit visit) {
    const int n = internet_address_list_length(list);
    for (int i = 0; i < n; ++i) {
      InternetAddress* const address = internet_address_list_get_address(list, i);
      if (INTERNET_ADDRESS_IS_MAILBOX(address)) {
        visit(INTERNET_ADDRESS_MAILBOX(address));
      } else {
        Walk(internet_address_group_get_members(INTERNET_ADDRESS_GROUP(address)), visit);
      }
    }
  }
};

struct Etpan {
  using Text = std::string;
  static constexpr const char* kName = "libetpan";

  template <class Visit>
  static void Read(const std::string& text, Visit visit) {
    std::size_t end = 0;
    mailimf_address_list* list = nullptr;
    if (mailimf_address_list_parse(text.data(), text.size(), &end, &list) != MAILIMF_NO_ERROR) {
      return;
    }
    Walk<mailimf_address>(list->ad_list, [&](const mailimf_address* address) {
      if (address->ad_type == MAILIMF_ADDRESS_MAILBOX) {
        visit(address->ad_data.ad_mailbox);
      } else {
        Walk<mailimf_mailbox>(address->ad_data.ad_group->grp_mb_list->mb_list, visit);
      }
    });
    mailimf_address_list_free(list);
  }

 private:
  template <class Item, class Visit>
  static void Walk(const clist* list, Visit visit) {
    for (const clistcell* cell = list->first; cell != nullptr; cell = cell->next) {
      visit(static_cast<const Item*>(cell->data));
    }
  }
};

// What the readers agree on.
std::string Mailbox(const S821Address& address) {
  const SString mailbox = address.LocalPart() + SString("@") + address.Domain();
  return std::string(mailbox.View());
}
std::string Mailbox(InternetAddressMailbox* address) {
  return internet_address_mailbox_get_addr(address);
}
std::string Mailbox(const mailimf_mailbox* address) { return address->mb_addr_spec; }

// --- The texts -----------------------------------------------------------------------------

struct Sample {
  std::string text;
  std::vector<std::string> mailboxes;  // the addresses in it
};

enum class Comments { kBeforeAngle, kAlsoBehind };

// A header of `n` addresses, folded behind the first comma past kFold bytes of a line.
Sample Header(std::size_t n, Comments comments) {
  struct Form {
    std::string_view before, domain, behind;
  };
  constexpr Form kForms[] = {
      {"", "example.org", ""},
      {"Jane Mary Doe <", "example.org", ">"},
      {"\"Smith, John (Sales)\" <", "department.example.org", ">"},
      {"John Q. Public <", "example.net", ">"},
      {"<", "mail.example.org", ">"},
      {"Joe Roe (at home these days) <", "home.example.org", ">"},
      {"Committee: ", "example.org", ""},
      {"Jane \"Jo\" Roe <", "example.org", ">;"},
      {"\"Joe \\\"the joiner\\\" Roe\" <", "example.org", ">"},
      {"", "[192.0.2.1]", ""},
  };
  constexpr std::string_view kNames[] = {"joe",         "jane.doe", "info+lists",        "j_roe",
                                         "post-master", "x",        "firstname.lastname"};
  Sample sample;
  constexpr std::size_t kFold = 40;
  std::size_t line = 0;
  for (std::size_t i = 0; i < n; ++i) {
    const auto& [before, domain, behind] = kForms[i % std::size(kForms)];
    if (i > 0) sample.text += ',';
    if (sample.text.size() - line > kFold) {
      line = sample.text.size();
      sample.text += "\r\n\t";
    } else if (i > 0) {
      sample.text += ' ';
    }
    std::string mailbox(kNames[i % std::size(kNames)]);
    ((mailbox += std::to_string(i)) += '@') += domain;
    (sample.text += before) += mailbox;
    sample.text += behind;
    if (behind.empty() && comments == Comments::kAlsoBehind) sample.text += " (Joe Roe)";
    sample.mailboxes.push_back(mailbox);
  }
  return sample;
}

// --- The rows ------------------------------------------------------------------------------

template <class Library>
std::vector<std::string> Mailboxes(const typename Library::Text& text) {
  std::vector<std::string> mailboxes;
  Library::Read(text, [&](const auto& address) { mailboxes.push_back(Mailbox(address)); });
  return mailboxes;
}

template <class Library, class Make>
void Run(benchmark::State& state, Make make) {
  const Sample sample = make();
  typename Library::Text text{std::string_view(sample.text)};
  if (Mailboxes<Library>(text) != sample.mailboxes) state.SkipWithError("wrong answer");
  for (auto _ : state) {
    benchmark::DoNotOptimize(text);
    std::size_t n = 0;
    Library::Read(text, [&](const auto& address) {
      benchmark::DoNotOptimize(address);
      ++n;
    });
    if (n != sample.mailboxes.size()) state.SkipWithError("wrong answer");
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(sample.mailboxes.size()));
}

// Names are operation/what/size; `make` returns the sample.
template <class... Libraries, class Make>
void Register(const std::string& operation, std::size_t size, Make make) {
  const auto one = [&]<class Library>(Library) {
    const std::string name = operation + '/' + Library::kName + '/' + std::to_string(size);
    benchmark::RegisterBenchmark(name.c_str(),
                                 [=](benchmark::State& state) { Run<Library>(state, make); });
  };
  (one(Libraries()), ...);
}

[[maybe_unused]] const bool kRegistered = [] {
  const std::string joe = "joe@example.org";
  Register<OurEnvelope, GMime, Etpan>("path", 1, [=] { return Sample{'<' + joe + '>', {joe}}; });
  Register<OurEnvelope, GMime>("route", 1, [=] {
    return Sample{"<@relay.example,@hub.example:" + joe + '>', {joe}};
  });
  Register<OurHeader, GMime, Etpan>("bare", 1, [=] { return Sample{joe, {joe}}; });
  for (const std::size_t n : {100U, 10000U}) {
    Register<OurHeader, GMime, Etpan>("header", n,
                                      [=] { return Header(n, Comments::kBeforeAngle); });
    Register<OurHeader, GMime>("header_comments", n,
                               [=] { return Header(n, Comments::kAlsoBehind); });
  }
  return true;
}();

}  // namespace
