// bench_peer_files URL FOLDER COUNT: fetches small files with one libcurl handle, again and again, and writes
// each as it comes. Prints the seconds it took.
#include <curl/curl.h>

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <string>

namespace {

bool FetchInto(CURL* handle, const std::string& url, const std::string& path)
{
    std::FILE* file = std::fopen(path.c_str(), "wb");
    if (file == nullptr)
        return false;
    curl_easy_setopt(handle, CURLOPT_URL, url.c_str());
    curl_easy_setopt(handle, CURLOPT_WRITEDATA, file);
    const CURLcode result = curl_easy_perform(handle);
    return std::fclose(file) == 0 && result == CURLE_OK;
}

}  // namespace

int main(int argc, char** argv)
{
    if (argc != 4)
        return 2;
    const auto begin = std::chrono::steady_clock::now();
    CURL* handle = curl_easy_init();
    curl_easy_setopt(handle, CURLOPT_FAILONERROR, 1L);
    bool done = true;
    for (int i = 0; done && i < std::atoi(argv[3]); ++i)
        done =
            FetchInto(handle, std::string(argv[1]) + "/synthetic/files/" + std::to_string(1000 + i) + ".bin",
                      std::string(argv[2]) + "/" + std::to_string(i));
    curl_easy_cleanup(handle);
    const std::chrono::duration<double> seconds = std::chrono::steady_clock::now() - begin;
    std::printf("%.4f\n", seconds.count());
    return done ? 0 : 1;
}
