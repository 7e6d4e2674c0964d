include a.dat
for-b:
	@echo "a after $(IS-B_NAME)"
for-c:
	@echo "a after $(IS-C_NAME)"
