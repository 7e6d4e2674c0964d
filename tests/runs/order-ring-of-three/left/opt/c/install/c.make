include c.dat
for-a:
	@echo "c after $(IS-A_NAME)"
