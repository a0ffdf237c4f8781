TEST(A, B) {}
