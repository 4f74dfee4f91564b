#include "DownloadFixture.h"

#include <httplib.h>
#include <openssl/evp.h>
#include <openssl/x509.h>

#include <memory>
#include <string>
#include <thread>

using namespace SystemTest;

namespace {

struct Free
{
    void operator()(EVP_PKEY* key) const { EVP_PKEY_free(key); }
    void operator()(X509* certificate) const { X509_free(certificate); }
};

// A certificate for 127.0.0.1 that is vouched for by nobody but itself.
class SelfSigned
{
public:
    SelfSigned() : key_(EVP_EC_gen("P-256")), certificate_(X509_new())
    {
        X509* const made = certificate_.get();
        X509_set_version(made, 2);
        ASN1_INTEGER_set(X509_get_serialNumber(made), 1);
        X509_gmtime_adj(X509_getm_notBefore(made), -3600);
        X509_gmtime_adj(X509_getm_notAfter(made), 3600);
        X509_set_pubkey(made, key_.get());
        X509_NAME* const name = X509_get_subject_name(made);
        const std::string host = "127.0.0.1";
        X509_NAME_add_entry_by_txt(name, "CN", MBSTRING_ASC,
                                   reinterpret_cast<const unsigned char*>(host.data()),
                                   static_cast<int>(host.size()), -1, 0);
        X509_set_issuer_name(made, name);
        X509_sign(made, key_.get(), EVP_sha256());
    }

    EVP_PKEY* Key() const { return key_.get(); }
    X509* Certificate() const { return certificate_.get(); }

private:
    std::unique_ptr<EVP_PKEY, Free> key_;
    std::unique_ptr<X509, Free> certificate_;
};

// Listens on a free port of the loopback for the life of the object, and keeps no connection: its end would
// wait for them.
class Listening
{
public:
    explicit Listening(httplib::Server& server) : server_(server)
    {
        server_.set_keep_alive_max_count(1);
        port_ = server_.bind_to_any_port("127.0.0.1");
        thread_ = std::thread([this] { server_.listen_after_bind(); });
        while (!server_.is_running())
            std::this_thread::yield();
    }
    Listening(const Listening&) = delete;
    Listening& operator=(const Listening&) = delete;
    ~Listening()
    {
        server_.stop();
        thread_.join();
    }

    std::string Port() const { return std::to_string(port_); }

private:
    httplib::Server& server_;
    int port_ = -1;
    std::thread thread_;
};

class HostileServer : public DownloadFixture
{
protected:
    // Fetches from a server that sends each request on to another address.
    bool FetchRedirected(const std::string& to)
    {
        httplib::Server server;
        server.Get(
            ".*", [&to](const httplib::Request&, httplib::Response& response) { response.set_redirect(to); });
        const Listening listening(server);
        return Fetch("http://127.0.0.1:" + listening.Port() + "/a", "a");
    }
};

}  // namespace

TEST_F(HostileServer, RedirectLeavesHttpForNothing)
{
    const std::string secret = folder_.File("secret");
    std::ofstream(secret) << "of this machine";
    for (const std::string& address :
         {"file://" + secret, std::string("ftp://127.0.0.1/a"), std::string("gopher://127.0.0.1/a"),
          std::string("dict://127.0.0.1/a")}) {
        EXPECT_FALSE(FetchRedirected(address)) << address;
        ExpectFailure(22, 1);
    }
}

TEST_F(HostileServer, AddressOfAnotherSchemeIsNotFetched)
{
    const std::string secret = folder_.File("secret");
    std::ofstream(secret) << "of this machine";
    EXPECT_FALSE(Fetch("file://" + secret, "a"));
    EXPECT_EQ(FilesLeft(), std::vector<std::string>{});
}

TEST_F(HostileServer, RedirectInACircleEnds)
{
    EXPECT_FALSE(FetchRedirected("/a"));
    ExpectFailure(22, 47);
}

TEST_F(HostileServer, CertificateThatNobodyVouchesForIsNotTrusted)
{
    const SelfSigned identity;
    httplib::SSLServer server(identity.Certificate(), identity.Key());
    ASSERT_TRUE(server.is_valid());
    bool is_asked = false;
    server.Get(".*", [&is_asked](const httplib::Request&, httplib::Response& response) {
        is_asked = true;
        response.set_content("a file", "text/plain");
    });
    {
        const Listening listening(server);
        const std::string address = "https://127.0.0.1:" + listening.Port() + "/a";
        EXPECT_FALSE(Fetch(address, "a"));
        ExpectFailure(22, 60);
        EXPECT_FALSE(FetchRedirected(address));
        ExpectFailure(22, 60);
    }
    EXPECT_FALSE(is_asked);
}
