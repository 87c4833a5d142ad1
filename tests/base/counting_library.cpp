// A library that counts the calls of its one function for as long as it is loaded.
namespace {

int calls = 0;

}  // namespace

extern "C" int CountCall() {
  return ++calls;
}
