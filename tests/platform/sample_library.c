int Answer(void);
int Answer(void) {
    return 42;
}
