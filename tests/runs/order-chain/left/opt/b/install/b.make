include b.dat
for-c:
	@echo "b after $(IS-C_NAME)"
