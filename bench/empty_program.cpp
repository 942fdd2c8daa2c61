// The least that a C++ program costs: the limit that start-up is measured against.
#include <string>

int main(int count, char** /*words*/) {
  return std::string(static_cast<std::size_t>(count), 'x').size() == 1 ? 0 : 1;
}
